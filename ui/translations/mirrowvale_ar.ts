<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar_EG">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>استيراد</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>عنوان URI يبدأ بـ otpauth://‎</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>استيراد URI</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>إدخال يدوي</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>جهة الإصدار</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>الحساب</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>المفتاح السري Base32</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>الخوارزمية</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>عدد الأرقام: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>المدة: %1&#xa0;ث</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>إضافة رمز مميز</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>حفظ</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>حذف</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>قص</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>نسخ</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>لصق</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>تحديد الكل</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>لا توجد رموز مميزة بعد</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>أضف عنوان URI من نوع otpauth أو أدخل مفتاحًا سريًا مشتركًا لإنشاء أول رمز مميز لك في Mirrowvale Authenticator.</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Mirrowvale Auth</source>
        <translation>Mirrowvale Auth</translation>
    </message>
    <message>
        <source>Add token</source>
        <translation>إضافة رمز مميز</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Ctrl</translation>
    </message>
</context>
<context>
    <name>Stepper</name>
    <message>
        <source>Decrement</source>
        <translation>إنقاص</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>زيادة</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>التالي</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>تم النسخ</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>نسخ الرمز</translation>
    </message>
</context>
<context>
    <name>TokenRowView</name>
    <message>
        <source>%1s</source>
        <translation>%1&#xa0;ث</translation>
    </message>
</context>
</TS>

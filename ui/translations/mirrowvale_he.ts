<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he_IL">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>ייבוא</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>כתובת otpauth://‎</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>ייבוא הכתובת</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>הזנה ידנית</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>מנפיק</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>חשבון</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>מפתח סודי Base32</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>אלגוריתם</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>ספרות: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>מחזור: %1&#xa0;שנ׳</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>הוספת אסימון</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>ביטול</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>שמירה</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>מחיקה</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>גזירה</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>העתקה</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>הדבקה</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>בחירת הכול</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>אין עדיין אסימונים</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>יש להוסיף כתובת otpauth או להזין מפתח סודי משותף כדי ליצור את האסימון הראשון ב־Mirrowvale Authenticator.</translation>
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
        <translation>הוספת אסימון</translation>
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
        <translation>הפחתה</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>הגדלה</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>הבא</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>הועתק</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>העתקת הקוד</translation>
    </message>
</context>
<context>
    <name>TokenRowView</name>
    <message>
        <source>%1s</source>
        <translation>%1&#xa0;שנ׳</translation>
    </message>
</context>
</TS>

<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>インポート</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>otpauth:// URI</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>URIをインポート</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>手動で入力</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>発行元</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>アカウント</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>Base32シークレット</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>アルゴリズム</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>桁数: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>更新間隔: %1秒</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>トークンを追加</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>切り取り</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>コピー</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>貼り付け</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>すべてを選択</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>トークンはまだありません</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>最初のMirrowvale Authenticatorトークンを作成するには、otpauth URIを追加するか、共有シークレットを入力してください。</translation>
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
        <translation>トークンを追加</translation>
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
        <translation>減らす</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>増やす</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>次へ</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>コピーしました</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>コードをコピー</translation>
    </message>
</context>
<context>
    <name>TokenRowView</name>
    <message>
        <source>%1s</source>
        <translation>%1秒</translation>
    </message>
</context>
</TS>

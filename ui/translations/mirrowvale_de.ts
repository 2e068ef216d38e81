<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>Importieren</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>otpauth://-URI</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>URI importieren</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>Manuelle Eingabe</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>Aussteller</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Konto</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>Geheimer Schlüssel (Base32)</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>Algorithmus</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>Ziffern: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>Intervall: %1&#xa0;s</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>Token hinzufügen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Ausschneiden</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>Noch keine Tokens</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>Füge einen otpauth-URI hinzu oder gib einen gemeinsamen geheimen Schlüssel ein, um dein erstes Token in Mirrowvale Authenticator zu erstellen.</translation>
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
        <translation>Token hinzufügen</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
</context>
<context>
    <name>Stepper</name>
    <message>
        <source>Decrement</source>
        <translation>Verringern</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>Erhöhen</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>Nächster</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Kopiert</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>Code kopieren</translation>
    </message>
</context>
<context>
    <name>TokenRowView</name>
    <message>
        <source>%1s</source>
        <translation>%1&#xa0;s</translation>
    </message>
</context>
</TS>

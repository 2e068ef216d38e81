<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>Importar</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>URI otpauth://</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>Importar URI</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>Introducción manual</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>Emisor</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Cuenta</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>Secreto en Base32</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>Algoritmo</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>Dígitos: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>Periodo: %1&#xa0;s</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>Añadir token</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>Eliminar</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Cortar</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copiar</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Pegar</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Seleccionar todo</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>Aún no hay tokens</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>Añade un URI otpauth o introduce un secreto compartido para crear tu primer token de Mirrowvale Authenticator.</translation>
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
        <translation>Añadir token</translation>
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
        <translation>Reducir</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>Aumentar</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copiado</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>Copiar código</translation>
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

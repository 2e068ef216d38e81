<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name>AddTokenForm</name>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>otpauth:// URI</source>
        <translation>URI otpauth://</translation>
    </message>
    <message>
        <source>Import URI</source>
        <translation>Importer l’URI</translation>
    </message>
    <message>
        <source>Manual token</source>
        <translation>Saisie manuelle</translation>
    </message>
    <message>
        <source>Issuer</source>
        <translation>Émetteur</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Compte</translation>
    </message>
    <message>
        <source>Base32 secret</source>
        <translation>Secret Base32</translation>
    </message>
    <message>
        <source>Algorithm</source>
        <translation>Algorithme</translation>
    </message>
    <message>
        <source>Digits: %1</source>
        <translation>Chiffres&#xa0;: %1</translation>
    </message>
    <message>
        <source>Period: %1s</source>
        <translation>Période&#xa0;: %1&#xa0;s</translation>
    </message>
</context>
<context>
    <name>AddTokenSheet</name>
    <message>
        <source>Add token</source>
        <translation>Ajouter un jeton</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
</context>
<context>
    <name>DeleteButton</name>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
</context>
<context>
    <name>EditMenu</name>
    <message>
        <source>Cut</source>
        <translation>Couper</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Coller</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>No tokens yet</source>
        <translation>Aucun jeton</translation>
    </message>
    <message>
        <source>Add an otpauth URI or enter a shared secret to create your first Mirrowvale Authenticator token.</source>
        <translation>Ajoutez un URI otpauth ou saisissez un secret partagé pour créer votre premier jeton dans Mirrowvale Authenticator.</translation>
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
        <translation>Ajouter un jeton</translation>
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
        <translation>Diminuer</translation>
    </message>
    <message>
        <source>Increment</source>
        <translation>Augmenter</translation>
    </message>
</context>
<context>
    <name>TokenRow</name>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Copied</source>
        <translation>Copié</translation>
    </message>
    <message>
        <source>Copy code</source>
        <translation>Copier le code</translation>
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

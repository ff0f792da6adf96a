<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>BarChart</name>
    <message>
        <source>%1: %2</source>
        <comment>a figure</comment>
        <translation>%1 : %2</translation>
    </message>
</context>
<context>
    <name>Busy</name>
    <message>
        <source>Loading</source>
        <translation>Chargement</translation>
    </message>
</context>
<context>
    <name>ComputerPage</name>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
</context>
<context>
    <name>DiveFigures</name>
    <message>
        <source>Duration</source>
        <translation>Durée</translation>
    </message>
    <message>
        <source>Greatest depth</source>
        <translation>Profondeur maximale</translation>
    </message>
    <message>
        <source>Average depth</source>
        <translation>Profondeur moyenne</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Température</translation>
    </message>
    <message>
        <source>Circuit</source>
        <translation>Circuit</translation>
    </message>
    <message>
        <source>Closed</source>
        <translation>Fermé</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Ouvert</translation>
    </message>
</context>
<context>
    <name>DiveList</name>
    <message>
        <source>Dives</source>
        <translation>Plongées</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Défilement</translation>
    </message>
    <message>
        <source>Loading the dives</source>
        <translation>Chargement des plongées</translation>
    </message>
    <message numerus="yes">
        <source>Go on with %n dive(s)</source>
        <translation>
            <numerusform>Continuer avec %n plongée</numerusform>
            <numerusform>Continuer avec %n plongées</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DiveListHeader</name>
    <message numerus="yes">
        <source>%n chosen</source>
        <translation>
            <numerusform>%n choisie</numerusform>
            <numerusform>%n choisies</numerusform>
        </translation>
    </message>
    <message>
        <source>Hidden dives</source>
        <translation>Plongées masquées</translation>
    </message>
    <message>
        <source>Dives</source>
        <translation>Plongées</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Toutes</translation>
    </message>
    <message>
        <source>Stop choosing</source>
        <translation>Ne plus choisir</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistiques</translation>
    </message>
    <message>
        <source>Choose several</source>
        <translation>En choisir plusieurs</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Number, place or notes</source>
        <translation>Numéro, lieu ou notes</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filtrer</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) found</source>
        <translation>
            <numerusform>%n plongée trouvée</numerusform>
            <numerusform>%n plongées trouvées</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n plongée</numerusform>
            <numerusform>%n plongées</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>DivePane</name>
    <message>
        <source>Loading the dive</source>
        <translation>Chargement de la plongée</translation>
    </message>
    <message>
        <source>Dive %1</source>
        <translation>Plongée %1</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>This dive is hidden. Restore it to see it in the list again.</source>
        <translation>Cette plongée est masquée. Rétablissez-la pour la revoir dans la liste.</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
</context>
<context>
    <name>DiveRow</name>
    <message>
        <source>Dive %1</source>
        <translation>Plongée %1</translation>
    </message>
</context>
<context>
    <name>DivesPage</name>
    <message numerus="yes">
        <source>%n dive(s) hidden</source>
        <translation>
            <numerusform>%n plongée masquée</numerusform>
            <numerusform>%n plongées masquées</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) restored</source>
        <translation>
            <numerusform>%n plongée rétablie</numerusform>
            <numerusform>%n plongées rétablies</numerusform>
        </translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>EmptyList</name>
    <message>
        <source>No dive found</source>
        <translation>Aucune plongée trouvée</translation>
    </message>
    <message>
        <source>No dives yet</source>
        <translation>Pas encore de plongée</translation>
    </message>
    <message>
        <source>Change the search or the filter.</source>
        <translation>Modifiez la recherche ou le filtre.</translation>
    </message>
    <message>
        <source>Synchronise the simulated computer to bring dives here.</source>
        <translation>Synchronisez l'ordinateur simulé pour avoir des plongées ici.</translation>
    </message>
    <message>
        <source>Switch on Bluetooth here and on your diving computer, then synchronise it.</source>
        <translation>Activez le Bluetooth ici et sur votre ordinateur de plongée, puis synchronisez-le.</translation>
    </message>
    <message>
        <source>Go to the computer</source>
        <translation>Aller à l'ordinateur</translation>
    </message>
    <message>
        <source>Import a file</source>
        <translation>Importer un fichier</translation>
    </message>
    <message>
        <source>Try a simulated computer</source>
        <translation>Essayer un ordinateur simulé</translation>
    </message>
    <message>
        <source>Show all dives</source>
        <translation>Afficher toutes les plongées</translation>
    </message>
</context>
<context>
    <name>ErrorBox</name>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Hide details</source>
        <translation>Masquer les détails</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Détails</translation>
    </message>
</context>
<context>
    <name>ExportDialog</name>
    <message numerus="yes">
        <source>Export %n dive(s)</source>
        <translation>
            <numerusform>Exporter %n plongée</numerusform>
            <numerusform>Exporter %n plongées</numerusform>
        </translation>
    </message>
    <message>
        <source>Choose a place…</source>
        <translation>Choisir un emplacement…</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>For other dive logs</source>
        <translation>Pour d'autres carnets de plongée</translation>
    </message>
    <message>
        <source>For a spreadsheet, one line a dive</source>
        <translation>Pour un tableur, une ligne par plongée</translation>
    </message>
    <message>
        <source>CSV with samples</source>
        <translation>CSV avec les mesures</translation>
    </message>
    <message>
        <source>For a spreadsheet, one line a sample</source>
        <translation>Pour un tableur, une ligne par mesure</translation>
    </message>
    <message>
        <source>Everything that the computer said</source>
        <translation>Tout ce que l'ordinateur a transmis</translation>
    </message>
    <message>
        <source>A picture of the profile</source>
        <translation>Une image du profil</translation>
    </message>
    <message>
        <source>A page to print</source>
        <translation>Une page à imprimer</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>The dives could not be written</source>
        <translation>Les plongées n'ont pas pu être écrites</translation>
    </message>
    <message>
        <source>Choose another place, or make room there.</source>
        <translation>Choisissez un autre emplacement, ou libérez-y de la place.</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) written to %1</source>
        <translation>
            <numerusform>%n plongée écrite dans %1</numerusform>
            <numerusform>%n plongées écrites dans %1</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Field</name>
    <message>
        <source>%1: %2</source>
        <comment>a figure</comment>
        <translation>%1 : %2</translation>
    </message>
</context>
<context>
    <name>Figure</name>
    <message>
        <source>%1: %2</source>
        <comment>a figure</comment>
        <translation>%1 : %2</translation>
    </message>
</context>
<context>
    <name>FilterPopup</name>
    <message>
        <source>Filter</source>
        <translation>Filtrer</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>Année</translation>
    </message>
    <message>
        <source>Every year</source>
        <translation>Toutes les années</translation>
    </message>
    <message>
        <source>Hidden dives</source>
        <translation>Plongées masquées</translation>
    </message>
    <message>
        <source>Show all dives</source>
        <translation>Afficher toutes les plongées</translation>
    </message>
    <message>
        <source>Every computer</source>
        <translation>Tous les ordinateurs</translation>
    </message>
</context>
<context>
    <name>GasCard</name>
    <message>
        <source>at %1</source>
        <comment>a time</comment>
        <translation>à %1</translation>
    </message>
    <message>
        <source>from the beginning</source>
        <translation>dès le début</translation>
    </message>
    <message>
        <source>%1 % oxygen</source>
        <translation>%1 % d'oxygène</translation>
    </message>
    <message>
        <source>%1 % helium</source>
        <translation>%1 % d'hélium</translation>
    </message>
    <message>
        <source>Gases</source>
        <translation>Gaz</translation>
    </message>
    <message>
        <source>diluent</source>
        <translation>diluant</translation>
    </message>
    <message>
        <source>not used</source>
        <translation>non utilisé</translation>
    </message>
    <message>
        <source>No gas was recorded.</source>
        <translation>Aucun gaz n'a été enregistré.</translation>
    </message>
</context>
<context>
    <name>ImportDialog</name>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>This file could not be read</source>
        <translation>Ce fichier n'a pas pu être lu</translation>
    </message>
    <message>
        <source>Choose a UDDF, CSV or JSON file that this app has written.</source>
        <translation>Choisissez un fichier UDDF, CSV ou JSON écrit par cette application.</translation>
    </message>
    <message>
        <source>Another file…</source>
        <translation>Autre fichier…</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) added</source>
        <translation>
            <numerusform>%n plongée ajoutée</numerusform>
            <numerusform>%n plongées ajoutées</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) here already</source>
        <translation>
            <numerusform>%n plongée déjà présente</numerusform>
            <numerusform>%n plongées déjà présentes</numerusform>
        </translation>
    </message>
    <message>
        <source>Dives (*.uddf *.csv *.json)</source>
        <translation>Plongées (*.uddf *.csv *.json)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
</context>
<context>
    <name>Main</name>
    <message>
        <source>Logbook – simulated computer</source>
        <translation>Carnet de plongée – ordinateur simulé</translation>
    </message>
    <message>
        <source>Logbook</source>
        <translation>Carnet de plongée</translation>
    </message>
</context>
<context>
    <name>NavigationBar</name>
    <message>
        <source>Pages</source>
        <translation>Pages</translation>
    </message>
    <message>
        <source>Dives</source>
        <translation>Plongées</translation>
    </message>
    <message>
        <source>Computer</source>
        <translation>Ordinateur</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
</context>
<context>
    <name>NotesCard</name>
    <message>
        <source>Your notes</source>
        <translation>Vos notes</translation>
    </message>
    <message>
        <source>Place</source>
        <translation>Lieu</translation>
    </message>
    <message>
        <source>Where you dived</source>
        <translation>Où vous avez plongé</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>What you saw, who was with you</source>
        <translation>Ce que vous avez vu, qui était avec vous</translation>
    </message>
    <message>
        <source>Saving…</source>
        <translation>Enregistrement…</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Enregistré</translation>
    </message>
    <message>
        <source>Saved while you write</source>
        <translation>Enregistré pendant que vous écrivez</translation>
    </message>
</context>
<context>
    <name>Notice</name>
    <message>
        <source>Close</source>
        <translation>Fermer</translation>
    </message>
</context>
<context>
    <name>PageScroll</name>
    <message>
        <source>Scroll</source>
        <translation>Défilement</translation>
    </message>
</context>
<context>
    <name>PaneHeader</name>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
</context>
<context>
    <name>ProfileView</name>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Point at the profile, or use the arrow keys, to read the values. Zoom with + and −.</source>
        <translation>Pointez le profil, ou utilisez les flèches, pour lire les valeurs. Zoomez avec + et −.</translation>
    </message>
    <message>
        <source>Whole dive</source>
        <translation>Toute la plongée</translation>
    </message>
</context>
<context>
    <name>RecorderCard</name>
    <message>
        <source>Recorded by</source>
        <translation>Enregistrée par</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modèle</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Numéro de série</translation>
    </message>
    <message>
        <source>Firmware</source>
        <translation>Micrologiciel</translation>
    </message>
    <message>
        <source>Owner</source>
        <translation>Propriétaire</translation>
    </message>
    <message>
        <source>Samples</source>
        <translation>Mesures</translation>
    </message>
    <message>
        <source>%1, every %2 s</source>
        <translation>%1, toutes les %2 s</translation>
    </message>
    <message>
        <source>Saved</source>
        <translation>Enregistré</translation>
    </message>
</context>
<context>
    <name>SettingsPage</name>
    <message>
        <source>Settings</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Units</source>
        <translation>Unités</translation>
    </message>
    <message>
        <source>Metric</source>
        <translation>Métriques</translation>
    </message>
    <message>
        <source>Metres, degrees Celsius</source>
        <translation>Mètres, degrés Celsius</translation>
    </message>
    <message>
        <source>Imperial</source>
        <translation>Impériales</translation>
    </message>
    <message>
        <source>Feet, degrees Fahrenheit</source>
        <translation>Pieds, degrés Fahrenheit</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>As the system</source>
        <translation>Comme le système</translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation>Apparence</translation>
    </message>
    <message>
        <source>Animations</source>
        <translation>Animations</translation>
    </message>
    <message>
        <source>Light or dark, and the size of texts, are those of your system.</source>
        <translation>Le thème clair ou sombre et la taille des textes sont ceux de votre système.</translation>
    </message>
</context>
<context>
    <name>SeveralPane</name>
    <message>
        <source>Choose dives in the list</source>
        <translation>Choisissez des plongées dans la liste</translation>
    </message>
    <message>
        <source>Then compare, export or hide them together.</source>
        <translation>Puis comparez-les, exportez-les ou masquez-les ensemble.</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n plongée</numerusform>
            <numerusform>%n plongées</numerusform>
        </translation>
    </message>
    <message>
        <source>Export</source>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Rétablir</translation>
    </message>
    <message>
        <source>Hide</source>
        <translation>Masquer</translation>
    </message>
    <message>
        <source>Compared</source>
        <translation>Comparaison</translation>
    </message>
    <message numerus="yes">
        <source>The first %n of them</source>
        <translation>
            <numerusform>La première d'entre elles</numerusform>
            <numerusform>Les %n premières</numerusform>
        </translation>
    </message>
    <message>
        <source>Dive %1</source>
        <translation>Plongée %1</translation>
    </message>
</context>
<context>
    <name>SimulationCard</name>
    <message>
        <source>Simulated computer</source>
        <translation>Ordinateur simulé</translation>
    </message>
    <message>
        <source>You are using a simulated computer.</source>
        <translation>Vous utilisez un ordinateur simulé.</translation>
    </message>
    <message>
        <source>Try everything without a diving computer and without Bluetooth. The app starts again; your own dives stay as they are.</source>
        <translation>Essayez tout sans ordinateur de plongée et sans Bluetooth. L'application redémarre ; vos propres plongées restent telles quelles.</translation>
    </message>
    <message>
        <source>The app could not start again</source>
        <translation>L'application n'a pas pu redémarrer</translation>
    </message>
    <message>
        <source>Install it again.</source>
        <translation>Installez-la de nouveau.</translation>
    </message>
    <message>
        <source>Back to real computers</source>
        <translation>Revenir aux vrais ordinateurs</translation>
    </message>
    <message>
        <source>Use a simulated computer</source>
        <translation>Utiliser un ordinateur simulé</translation>
    </message>
</context>
<context>
    <name>StatisticsPane</name>
    <message>
        <source>Your dives will be here</source>
        <translation>Vos plongées seront ici</translation>
    </message>
    <message>
        <source>As soon as there are some, this page shows what they come to.</source>
        <translation>Dès qu'il y en aura, cette page en fera le bilan.</translation>
    </message>
    <message>
        <source>Statistics</source>
        <translation>Statistiques</translation>
    </message>
    <message>
        <source>Of the dives that the filter shows</source>
        <translation>Des plongées que le filtre affiche</translation>
    </message>
    <message>
        <source>Dives</source>
        <translation>Plongées</translation>
    </message>
    <message>
        <source>Under water</source>
        <translation>Sous l'eau</translation>
    </message>
    <message>
        <source>Deepest</source>
        <translation>La plus profonde</translation>
    </message>
    <message>
        <source>Longest</source>
        <translation>La plus longue</translation>
    </message>
    <message>
        <source>By year</source>
        <translation>Par année</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s), %1</source>
        <translation>
            <numerusform>%n plongée, %1</numerusform>
            <numerusform>%n plongées, %1</numerusform>
        </translation>
    </message>
    <message>
        <source>By greatest depth</source>
        <translation>Par profondeur maximale</translation>
    </message>
    <message>
        <source>%1 to %2 %3</source>
        <comment>a range of depths and its unit</comment>
        <translation>%1 à %2 %3</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s)</source>
        <translation>
            <numerusform>%n plongée</numerusform>
            <numerusform>%n plongées</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>StoreCard</name>
    <message>
        <source>Everything in the file is sound.</source>
        <translation>Tout est en ordre dans le fichier.</translation>
    </message>
    <message>
        <source>File with the dives</source>
        <translation>Fichier des plongées</translation>
    </message>
    <message>
        <source>Dives of simulated computers are kept apart from your own.</source>
        <translation>Les plongées des ordinateurs simulés sont gardées à part des vôtres.</translation>
    </message>
    <message>
        <source>Another file…</source>
        <translation>Autre fichier…</translation>
    </message>
    <message>
        <source>The usual file</source>
        <translation>Le fichier habituel</translation>
    </message>
    <message>
        <source>Check the file</source>
        <translation>Vérifier le fichier</translation>
    </message>
    <message>
        <source>Checking</source>
        <translation>Vérification</translation>
    </message>
    <message>
        <source>Dives (*.sqlite *.db)</source>
        <translation>Plongées (*.sqlite *.db)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
</context>
<context>
    <name>StoreError</name>
    <message>
        <source>The file with the dives cannot be changed</source>
        <translation>Le fichier des plongées ne peut pas être modifié</translation>
    </message>
    <message>
        <source>The disk is full, so this was not saved</source>
        <translation>Le disque est plein : rien n'a été enregistré</translation>
    </message>
    <message>
        <source>The file with the dives is damaged</source>
        <translation>Le fichier des plongées est endommagé</translation>
    </message>
    <message>
        <source>This file does not hold dives of this app</source>
        <translation>Ce fichier ne contient pas de plongées de cette application</translation>
    </message>
    <message>
        <source>A newer version of the app has written this file</source>
        <translation>Ce fichier vient d'une version plus récente de l'application</translation>
    </message>
    <message>
        <source>Another program is using the file with the dives</source>
        <translation>Un autre programme utilise le fichier des plongées</translation>
    </message>
    <message>
        <source>A part of the app is missing: the driver for SQLite</source>
        <translation>Il manque une partie de l'application : le pilote SQLite</translation>
    </message>
    <message>
        <source>This dive is no longer in the file</source>
        <translation>Cette plongée n'est plus dans le fichier</translation>
    </message>
    <message>
        <source>The file with the dives could not be opened</source>
        <translation>Le fichier des plongées n'a pas pu être ouvert</translation>
    </message>
    <message>
        <source>The file with the dives could not be used</source>
        <translation>Le fichier des plongées n'a pas pu être utilisé</translation>
    </message>
    <message>
        <source>Allow yourself to write the file and its folder, or choose another file in the settings.</source>
        <translation>Donnez-vous le droit d'écrire dans le fichier et son dossier, ou choisissez un autre fichier dans les réglages.</translation>
    </message>
    <message>
        <source>Make room on the disk, then try again.</source>
        <translation>Libérez de la place sur le disque, puis réessayez.</translation>
    </message>
    <message>
        <source>Put a copy from a backup in its place, or choose another file in the settings.</source>
        <translation>Remplacez-le par une copie de sauvegarde, ou choisissez un autre fichier dans les réglages.</translation>
    </message>
    <message>
        <source>Choose another file in the settings.</source>
        <translation>Choisissez un autre fichier dans les réglages.</translation>
    </message>
    <message>
        <source>Update this app.</source>
        <translation>Mettez cette application à jour.</translation>
    </message>
    <message>
        <source>Wait until the other program has finished, then try again.</source>
        <translation>Attendez que l'autre programme ait fini, puis réessayez.</translation>
    </message>
    <message>
        <source>Install the SQLite driver of Qt, then start the app again.</source>
        <translation>Installez le pilote SQLite de Qt, puis relancez l'application.</translation>
    </message>
    <message>
        <source>Choose another dive.</source>
        <translation>Choisissez une autre plongée.</translation>
    </message>
    <message>
        <source>Look whether its folder exists and may be read, then try again.</source>
        <translation>Vérifiez que son dossier existe et peut être lu, puis réessayez.</translation>
    </message>
</context>
<context>
    <name>Units</name>
    <message>
        <source>m</source>
        <comment>metres</comment>
        <translation>m</translation>
    </message>
    <message>
        <source>ft</source>
        <comment>feet</comment>
        <translation>ft</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <comment>temperatures</comment>
        <translation>%1 à %2</translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 h</source>
        <comment>hours</comment>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>no date</source>
        <translation>sans date</translation>
    </message>
    <message>
        <source>Without a date</source>
        <translation>Sans date</translation>
    </message>
    <message>
        <source>Air</source>
        <translation>Air</translation>
    </message>
    <message>
        <source>Oxygen</source>
        <translation>Oxygène</translation>
    </message>
    <message>
        <source>Another maker's</source>
        <translation>D'une autre marque</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>ddd d</source>
        <comment>a day, as Qt formats dates</comment>
        <translation>ddd d</translation>
    </message>
</context>
<context>
    <name>DiveProfileItem</name>
    <message>
        <source>no samples</source>
        <translation>aucun relevé</translation>
    </message>
    <message>
        <source>At %1: %2.</source>
        <comment>time, then depth and more</comment>
        <translation>À %1 : %2.</translation>
    </message>
    <message>
        <source>greatest depth %1</source>
        <translation>profondeur maximale %1</translation>
    </message>
    <message>
        <source>duration %1</source>
        <translation>durée %1</translation>
    </message>
    <message>
        <source>Dive %1: %2</source>
        <comment>number, then depth and more</comment>
        <translation>Plongée %1 : %2</translation>
    </message>
    <message>
        <source>temperature %1</source>
        <translation>température %1</translation>
    </message>
    <message>
        <source>temperature %1 to %2</source>
        <translation>température de %1 à %2</translation>
    </message>
    <message>
        <source>gases %1</source>
        <translation>gaz %1</translation>
    </message>
    <message>
        <source>Profile of dive %1</source>
        <translation>Profil de la plongée %1</translation>
    </message>
    <message>
        <source>Profiles of %1 dives</source>
        <translation>Profils de %1 plongées</translation>
    </message>
</context>
</TS>

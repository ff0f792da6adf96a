<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>AboutCard</name>
    <message>
        <source>About the computer</source>
        <translation>À propos de l’ordinateur</translation>
    </message>
    <message>
        <source>Its model, its versions and its serial number.</source>
        <translation>Son modèle, ses versions et son numéro de série.</translation>
    </message>
    <message>
        <source>Model</source>
        <translation>Modèle</translation>
    </message>
    <message>
        <source>Firmware</source>
        <translation>Micrologiciel</translation>
    </message>
    <message>
        <source>Bootloader</source>
        <translation>Programme d’amorçage</translation>
    </message>
    <message>
        <source>Serial number</source>
        <translation>Numéro de série</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>Adresse</translation>
    </message>
    <message>
        <source>The computer is waiting for firmware. Everything else works once its firmware is installed.</source>
        <translation>L’ordinateur attend un micrologiciel. Tout le reste fonctionnera une fois celui-ci installé.</translation>
    </message>
</context>
<context>
    <name>BarChart</name>
    <message>
        <source>%1: %2</source>
        <comment>a figure</comment>
        <translation>%1&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>BatteryCard</name>
    <message>
        <source>Alkaline</source>
        <translation>Alcaline</translation>
    </message>
    <message>
        <source>Nickel metal hydride, rechargeable</source>
        <translation>Nickel-hydrure métallique, rechargeable</translation>
    </message>
    <message>
        <source>Lithium ion, 3.6 V, rechargeable</source>
        <translation>Lithium-ion 3,6 V, rechargeable</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>Pile</translation>
    </message>
    <message>
        <source>The type of the battery, and what the computer has noted about it.</source>
        <translation>Le type de la pile et ce que l’ordinateur a noté à son sujet.</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message numerus="yes">
        <source>History: %n record(s)</source>
        <translation>
            <numerusform>Historique&#xa0;: %n enregistrement</numerusform>
            <numerusform>Historique&#xa0;: %n enregistrements</numerusform>
        </translation>
    </message>
    <message>
        <source>The computer has noted nothing yet.</source>
        <translation>L’ordinateur n’a encore rien noté.</translation>
    </message>
    <message>
        <source>As the computer sends it; what the numbers mean is not known.</source>
        <translation>Tel que l’ordinateur l’envoie&#xa0;; on ignore le sens de ces nombres.</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Faire défiler</translation>
    </message>
    <message>
        <source>History of the battery</source>
        <translation>Historique de la pile</translation>
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
    <name>ClockCard</name>
    <message>
        <source>The same as on this machine.</source>
        <translation>La même que sur cet appareil.</translation>
    </message>
    <message>
        <source>%1 behind this machine.</source>
        <comment>a time</comment>
        <translation>%1 de retard sur cet appareil.</translation>
    </message>
    <message>
        <source>%1 ahead of this machine.</source>
        <comment>a time</comment>
        <translation>%1 d’avance sur cet appareil.</translation>
    </message>
    <message>
        <source>Clock</source>
        <translation>Horloge</translation>
    </message>
    <message>
        <source>Set it before a journey, and after one.</source>
        <translation>Réglez-la avant et après chaque voyage.</translation>
    </message>
    <message>
        <source>Set to now</source>
        <translation>Mettre à l’heure</translation>
    </message>
    <message>
        <source>Setting the clock</source>
        <translation>Mise à l’heure</translation>
    </message>
    <message>
        <source>The clock is set.</source>
        <translation>L’horloge est à l’heure.</translation>
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
    <name>ConfirmDialog</name>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>DeleteCard</name>
    <message>
        <source>Delete dives</source>
        <translation>Supprimer des plongées</translation>
    </message>
    <message>
        <source>In the computer only: the dives in this app stay.</source>
        <translation>Dans l’ordinateur seulement&#xa0;: les plongées de cette application restent.</translation>
    </message>
    <message>
        <source>Delete the last dive…</source>
        <translation>Supprimer la dernière plongée…</translation>
    </message>
    <message>
        <source>Delete all dives…</source>
        <translation>Supprimer toutes les plongées…</translation>
    </message>
    <message>
        <source>Deleting</source>
        <translation>Suppression en cours</translation>
    </message>
    <message>
        <source>All dives in the computer are deleted.</source>
        <translation>Toutes les plongées de l’ordinateur sont supprimées.</translation>
    </message>
    <message>
        <source>The last dive in the computer is deleted.</source>
        <translation>La dernière plongée de l’ordinateur est supprimée.</translation>
    </message>
    <message>
        <source>Delete all dives in the computer?</source>
        <translation>Supprimer toutes les plongées de l’ordinateur&#xa0;?</translation>
    </message>
    <message>
        <source>Delete the last dive in the computer?</source>
        <translation>Supprimer la dernière plongée de l’ordinateur&#xa0;?</translation>
    </message>
    <message>
        <source>Dives that you have not synchronised are lost for good, with their profiles. Those that are saved in this app stay.</source>
        <translation>Les plongées que vous n’avez pas synchronisées seront perdues pour toujours, avec leurs profils. Celles qui sont enregistrées dans cette application restent.</translation>
    </message>
    <message>
        <source>If you have not synchronised this dive, it is lost for good, with its profile. If it is saved in this app, it stays there.</source>
        <translation>Si vous n’avez pas synchronisé cette plongée, elle sera perdue pour toujours, avec son profil. Si elle est enregistrée dans cette application, elle y reste.</translation>
    </message>
    <message>
        <source>Delete all</source>
        <translation>Tout supprimer</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Supprimer</translation>
    </message>
    <message>
        <source>Synchronise first</source>
        <translation>Synchroniser d’abord</translation>
    </message>
</context>
<context>
    <name>DeviceChoice</name>
    <message>
        <source>No computer in reach</source>
        <translation>Aucun ordinateur à portée</translation>
    </message>
    <message>
        <source>Choose your computer</source>
        <translation>Choisissez votre ordinateur</translation>
    </message>
    <message>
        <source>Switch your diving computer on, choose its Bluetooth mode, and keep it near this machine. Then search for it.</source>
        <translation>Allumez votre ordinateur de plongée, choisissez son mode Bluetooth et gardez-le près de cet appareil. Lancez ensuite la recherche.</translation>
    </message>
    <message>
        <source>Search again</source>
        <translation>Chercher encore</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Chercher</translation>
    </message>
    <message>
        <source>Try a simulated computer</source>
        <translation>Essayer un ordinateur simulé</translation>
    </message>
    <message>
        <source>Computers in reach</source>
        <translation>Ordinateurs à portée</translation>
    </message>
    <message>
        <source>Searching</source>
        <translation>Recherche en cours</translation>
    </message>
    <message>
        <source>Stop searching</source>
        <translation>Arrêter la recherche</translation>
    </message>
    <message>
        <source>Back to %1</source>
        <translation>Retour à %1</translation>
    </message>
</context>
<context>
    <name>DeviceLine</name>
    <message>
        <source>Strong signal</source>
        <translation>Signal fort</translation>
    </message>
    <message>
        <source>Medium signal</source>
        <translation>Signal moyen</translation>
    </message>
    <message>
        <source>Weak signal</source>
        <translation>Signal faible</translation>
    </message>
    <message>
        <source>chosen now</source>
        <translation>choisi actuellement</translation>
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
    <message>
        <source>Choose dives</source>
        <translation>Choisir des plongées</translation>
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
    <name>DiveProfileItem</name>
    <message>
        <source>no samples</source>
        <translation>aucun relevé</translation>
    </message>
    <message>
        <source>At %1: %2.</source>
        <comment>time, then depth and more</comment>
        <translation>À %1&#xa0;: %2.</translation>
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
        <translation>Plongée %1&#xa0;: %2</translation>
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
        <translation>Synchronisez l’ordinateur simulé pour avoir des plongées ici.</translation>
    </message>
    <message>
        <source>Switch on Bluetooth here and on your diving computer, then synchronise it.</source>
        <translation>Activez le Bluetooth ici et sur votre ordinateur de plongée, puis synchronisez-le.</translation>
    </message>
    <message>
        <source>Go to the computer</source>
        <translation>Aller à l’ordinateur</translation>
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
    <name>Examination</name>
    <message>
        <source>Find out why</source>
        <translation>Chercher pourquoi</translation>
    </message>
    <message>
        <source>Looking at everything between here and the computer</source>
        <translation>Examen de tout ce qui se trouve entre cette machine et l’ordinateur</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>ExpertCard</name>
    <message>
        <source>Expert</source>
        <translation>Expert</translation>
    </message>
    <message>
        <source>Show settings without a known meaning</source>
        <translation>Afficher les réglages dont on ignore le sens</translation>
    </message>
    <message>
        <source>These eight settings cannot be read from the computer, and what they do depends on the model. Write them only if you know them.</source>
        <translation>Ces huit réglages ne peuvent pas être lus dans l’ordinateur, et leur effet dépend du modèle. Ne les écrivez que si vous les connaissez.</translation>
    </message>
    <message>
        <source>a number</source>
        <translation>un nombre</translation>
    </message>
    <message>
        <source>0 to 255</source>
        <translation>0 à 255</translation>
    </message>
    <message>
        <source>Enter a number.</source>
        <translation>Entrez un nombre.</translation>
    </message>
    <message>
        <source>Enter a whole number from 0 to 255.</source>
        <translation>Entrez un nombre entier de 0 à 255.</translation>
    </message>
    <message>
        <source>Write to the computer…</source>
        <translation>Écrire dans l’ordinateur…</translation>
    </message>
    <message>
        <source>Writing</source>
        <translation>Écriture en cours</translation>
    </message>
    <message>
        <source>The computer has accepted the settings.</source>
        <translation>L’ordinateur a accepté les réglages.</translation>
    </message>
    <message>
        <source>Write these settings?</source>
        <translation>Écrire ces réglages&#xa0;?</translation>
    </message>
    <message>
        <source>They replace those of the computer. What it has now cannot be read, so there is no way back.</source>
        <translation>Ils remplacent ceux de l’ordinateur. Ses réglages actuels ne peuvent pas être lus&#xa0;: il n’y a pas de retour possible.</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>Écrire</translation>
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
        <translation>Pour d’autres carnets de plongée</translation>
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
        <translation>Tout ce que l’ordinateur a transmis</translation>
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
        <translation>Les plongées n’ont pas pu être écrites</translation>
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
        <translation>%1&#xa0;: %2</translation>
    </message>
</context>
<context>
    <name>Figure</name>
    <message>
        <source>%1: %2</source>
        <comment>a figure</comment>
        <translation>%1&#xa0;: %2</translation>
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
    <name>Findings</name>
    <message>
        <source>The app can use Bluetooth</source>
        <translation>L’application sait utiliser le Bluetooth</translation>
    </message>
    <message>
        <source>Your system answers</source>
        <translation>Votre système répond</translation>
    </message>
    <message>
        <source>The app may use Bluetooth</source>
        <translation>L’application peut utiliser le Bluetooth</translation>
    </message>
    <message>
        <source>The Bluetooth service of your system runs</source>
        <translation>Le service Bluetooth de votre système fonctionne</translation>
    </message>
    <message>
        <source>The Bluetooth service is new enough</source>
        <translation>Le service Bluetooth est assez récent</translation>
    </message>
    <message>
        <source>Nothing blocks Bluetooth</source>
        <translation>Rien ne bloque le Bluetooth</translation>
    </message>
    <message>
        <source>There is a Bluetooth adapter</source>
        <translation>Il y a un adaptateur Bluetooth</translation>
    </message>
    <message>
        <source>Bluetooth is switched on</source>
        <translation>Le Bluetooth est activé</translation>
    </message>
    <message>
        <source>No other program here is connected to the computer</source>
        <translation>Aucun autre programme ici n’est connecté à l’ordinateur</translation>
    </message>
    <message>
        <source>The computer is in reach</source>
        <translation>L’ordinateur est à portée</translation>
    </message>
    <message>
        <source>The computer accepts a connection</source>
        <translation>L’ordinateur accepte une connexion</translation>
    </message>
    <message>
        <source>It offers the right kind of connection</source>
        <translation>Il offre le bon type de connexion</translation>
    </message>
    <message>
        <source>It is a diving computer</source>
        <translation>C’est un ordinateur de plongée</translation>
    </message>
    <message>
        <source>The connection carries enough at a time</source>
        <translation>La connexion transporte assez à la fois</translation>
    </message>
    <message>
        <source>Each answer comes once</source>
        <translation>Chaque réponse arrive une seule fois</translation>
    </message>
    <message>
        <source>The computer answers</source>
        <translation>L’ordinateur répond</translation>
    </message>
    <message>
        <source>The computer is ready</source>
        <translation>L’ordinateur est prêt</translation>
    </message>
    <message>
        <source>The clock of the computer is right</source>
        <translation>L’horloge de l’ordinateur est à l’heure</translation>
    </message>
    <message>
        <source>Last entry about the battery: %1</source>
        <translation>Dernière entrée sur la pile : %1</translation>
    </message>
    <message>
        <source>Your system has not asked you yet whether the app may use Bluetooth</source>
        <translation>Votre système ne vous a pas encore demandé si l’application peut utiliser le Bluetooth</translation>
    </message>
    <message>
        <source>The version of the Bluetooth service is not known</source>
        <translation>La version du service Bluetooth est inconnue</translation>
    </message>
    <message>
        <source>How much the connection carries is not known</source>
        <translation>On ne sait pas combien la connexion transporte</translation>
    </message>
    <message>
        <source>The computer has no entry about its battery</source>
        <translation>L’ordinateur n’a aucune entrée sur sa pile</translation>
    </message>
    <message>
        <source>Your system cannot be asked about Bluetooth</source>
        <translation>Votre système ne peut pas être interrogé sur le Bluetooth</translation>
    </message>
    <message>
        <source>The Bluetooth service of your system is too old</source>
        <translation>Le service Bluetooth de votre système est trop ancien</translation>
    </message>
    <message>
        <source>Bluetooth is blocked, as in airplane mode</source>
        <translation>Le Bluetooth est bloqué, comme en mode avion</translation>
    </message>
    <message>
        <source>Another program here is connected to the computer</source>
        <translation>Un autre programme ici est connecté à l’ordinateur</translation>
    </message>
    <message>
        <source>The computer waits for firmware</source>
        <translation>L’ordinateur attend un micrologiciel</translation>
    </message>
    <message>
        <source>The clock of the computer is wrong</source>
        <translation>L’horloge de l’ordinateur n’est pas à l’heure</translation>
    </message>
    <message>
        <source>Restart this machine.</source>
        <translation>Redémarrez cette machine.</translation>
    </message>
    <message>
        <source>Update your system.</source>
        <translation>Mettez votre système à jour.</translation>
    </message>
    <message>
        <source>End airplane mode, or use the wireless switch of this machine.</source>
        <translation>Quittez le mode avion, ou utilisez le commutateur sans fil de cette machine.</translation>
    </message>
    <message>
        <source>Close the other program.</source>
        <translation>Fermez l’autre programme.</translation>
    </message>
    <message>
        <source>Install its firmware.</source>
        <translation>Installez son micrologiciel.</translation>
    </message>
    <message>
        <source>Set it when the computer is connected.</source>
        <translation>Réglez-la une fois l’ordinateur connecté.</translation>
    </message>
</context>
<context>
    <name>FirmwareCard</name>
    <message>
        <source>Firmware</source>
        <translation>Micrologiciel</translation>
    </message>
    <message>
        <source>Firmware of the older kind</source>
        <translation>Micrologiciel de l’ancien type</translation>
    </message>
    <message>
        <source>Bootloader</source>
        <translation>Programme d’amorçage</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>The file is empty or could not be read</source>
        <translation>Le fichier est vide ou n’a pas pu être lu</translation>
    </message>
    <message>
        <source>Installs new firmware from a file that is made for your model.</source>
        <translation>Installe un nouveau micrologiciel à partir d’un fichier prévu pour votre modèle.</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <source>Kind</source>
        <translation>Sorte</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>not known</source>
        <translation>inconnue</translation>
    </message>
    <message>
        <source>In the computer</source>
        <translation>Dans l’ordinateur</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>Taille</translation>
    </message>
    <message>
        <source>Checksum</source>
        <translation>Somme de contrôle</translation>
    </message>
    <message>
        <source>Look whether you may read it, or choose another one.</source>
        <translation>Vérifiez que vous avez le droit de le lire, ou choisissez-en un autre.</translation>
    </message>
    <message>
        <source>Choose a file that is made for this model.</source>
        <translation>Choisissez un fichier prévu pour ce modèle.</translation>
    </message>
    <message>
        <source>Choose another file…</source>
        <translation>Choisir un autre fichier…</translation>
    </message>
    <message>
        <source>Install…</source>
        <translation>Installer…</translation>
    </message>
    <message>
        <source>Choose a file…</source>
        <translation>Choisir un fichier…</translation>
    </message>
    <message>
        <source>Installation</source>
        <translation>Installation</translation>
    </message>
    <message>
        <source>Preparing</source>
        <translation>Préparation</translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <comment>sizes</comment>
        <translation>%1 sur %2</translation>
    </message>
    <message>
        <source>Installed. The computer may restart now.</source>
        <translation>Installé. L’ordinateur va peut-être redémarrer.</translation>
    </message>
    <message>
        <source>Install it again…</source>
        <translation>L’installer à nouveau…</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Leave the computer switched on and near until this is finished.</source>
        <translation>Laissez l’ordinateur allumé et à proximité jusqu’à la fin.</translation>
    </message>
    <message>
        <source>Firmware (*.bin)</source>
        <translation>Micrologiciel (*.bin)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>Tous les fichiers (*)</translation>
    </message>
    <message>
        <source>Replace the bootloader?</source>
        <translation>Remplacer le programme d’amorçage&#xa0;?</translation>
    </message>
    <message>
        <source>Replace the firmware?</source>
        <translation>Remplacer le micrologiciel&#xa0;?</translation>
    </message>
    <message>
        <source>%1 gets version %2.</source>
        <translation>%1 reçoit la version %2.</translation>
    </message>
    <message>
        <source>Synchronise first, so that your dives are safe. See that the battery is charged, and do not interrupt the installation.</source>
        <translation>Synchronisez d’abord, pour que vos plongées soient en sécurité. Vérifiez que la pile est chargée et n’interrompez pas l’installation.</translation>
    </message>
    <message>
        <source>Install</source>
        <translation>Installer</translation>
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
        <translation>%1&#xa0;% d’oxygène</translation>
    </message>
    <message>
        <source>%1 % helium</source>
        <translation>%1&#xa0;% d’hélium</translation>
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
        <translation>Aucun gaz n’a été enregistré.</translation>
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
        <translation>Ce fichier n’a pas pu être lu</translation>
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
    <name>JobRun</name>
    <message>
        <source>Waiting for its turn</source>
        <translation>En attente de son tour</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Connexion en cours</translation>
    </message>
    <message>
        <source>Trying again after a fault</source>
        <translation>Nouvel essai après une erreur</translation>
    </message>
    <message>
        <source>Stopping</source>
        <translation>Arrêt en cours</translation>
    </message>
</context>
<context>
    <name>JobStatus</name>
    <message>
        <source>Reading</source>
        <translation>Lecture en cours</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Réessayer</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Annulé</translation>
    </message>
</context>
<context>
    <name>LocalTime</name>
    <message numerus="yes">
        <source>%n second(s)</source>
        <translation>
            <numerusform>%n seconde</numerusform>
            <numerusform>%n secondes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation>
            <numerusform>%n minute</numerusform>
            <numerusform>%n minutes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n hour(s)</source>
        <translation>
            <numerusform>%n heure</numerusform>
            <numerusform>%n heures</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n day(s)</source>
        <translation>
            <numerusform>%n jour</numerusform>
            <numerusform>%n jours</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>LogCard</name>
    <message>
        <source>System log</source>
        <translation>Journal du système</translation>
    </message>
    <message>
        <source>What the computer has noted about itself, for whoever helps you with it.</source>
        <translation>Ce que l’ordinateur a noté sur lui-même, pour qui vous aide à l’entretenir.</translation>
    </message>
    <message numerus="yes">
        <source>%n entry(ies), in English</source>
        <translation>
            <numerusform>%n entrée, en anglais</numerusform>
            <numerusform>%n entrées, en anglais</numerusform>
        </translation>
    </message>
    <message>
        <source>The log is empty.</source>
        <translation>Le journal est vide.</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Faire défiler</translation>
    </message>
    <message>
        <source>Save as text…</source>
        <translation>Enregistrer comme texte…</translation>
    </message>
    <message>
        <source>Saved.</source>
        <translation>Enregistré.</translation>
    </message>
    <message>
        <source>Save the log</source>
        <translation>Enregistrer le journal</translation>
    </message>
    <message>
        <source>Text (*.txt)</source>
        <translation>Texte (*.txt)</translation>
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
    <name>OwnerCard</name>
    <message>
        <source>Owner</source>
        <translation>Propriétaire</translation>
    </message>
    <message>
        <source>The name that the computer shows, so that it finds its way back to you.</source>
        <translation>Le nom que l’ordinateur affiche, pour qu’il vous revienne si vous le perdez.</translation>
    </message>
    <message>
        <source>Name, telephone</source>
        <translation>Nom, téléphone</translation>
    </message>
    <message>
        <source>Save in the computer</source>
        <translation>Enregistrer dans l’ordinateur</translation>
    </message>
    <message>
        <source>Saving</source>
        <translation>Enregistrement en cours</translation>
    </message>
    <message>
        <source>Saved in the computer.</source>
        <translation>Enregistré dans l’ordinateur.</translation>
    </message>
    <message>
        <source>Enter a shorter name: computers keep about 30 letters, fewer with accents.</source>
        <translation>Entrez un nom plus court&#xa0;: les ordinateurs gardent environ 30 lettres, moins avec des accents.</translation>
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
    <name>PressureCard</name>
    <message>
        <source>Surface pressure</source>
        <translation>Pression en surface</translation>
    </message>
    <message>
        <source>The air pressure at the water, which depth and decompression depend on.</source>
        <translation>La pression de l’air au bord de l’eau, dont dépendent la profondeur et la décompression.</translation>
    </message>
    <message>
        <source>At the surface</source>
        <translation>En surface</translation>
    </message>
    <message>
        <source>Around the computer</source>
        <translation>Autour de l’ordinateur</translation>
    </message>
    <message>
        <source>New surface pressure</source>
        <translation>Nouvelle pression en surface</translation>
    </message>
    <message>
        <source>Set…</source>
        <translation>Régler…</translation>
    </message>
    <message>
        <source>Set the surface pressure</source>
        <translation>Régler la pression en surface</translation>
    </message>
    <message>
        <source>Enter a pressure from %1 to %2.</source>
        <translation>Entrez une pression de %1 à %2.</translation>
    </message>
    <message>
        <source>Setting the pressure</source>
        <translation>Réglage de la pression</translation>
    </message>
    <message>
        <source>The surface pressure is set.</source>
        <translation>La pression en surface est réglée.</translation>
    </message>
    <message>
        <source>Set the surface pressure?</source>
        <translation>Régler la pression en surface&#xa0;?</translation>
    </message>
    <message>
        <source>The computer reckons depth and decompression with %1 from now on. A wrong pressure makes both wrong.</source>
        <translation>L’ordinateur calculera désormais la profondeur et la décompression avec %1. Une pression fausse les rend fausses toutes les deux.</translation>
    </message>
    <message>
        <source>Set it</source>
        <translation>Régler</translation>
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
    <name>Reasons</name>
    <message>
        <source>The computer does not have this</source>
        <translation>L’ordinateur n’a rien de tel</translation>
    </message>
    <message>
        <source>This text is too long for the computer</source>
        <translation>Ce texte est trop long pour l’ordinateur</translation>
    </message>
    <message>
        <source>This file is not firmware for a diving computer</source>
        <translation>Ce fichier n’est pas un micrologiciel d’ordinateur de plongée</translation>
    </message>
    <message>
        <source>The computer has this version already</source>
        <translation>L’ordinateur a déjà cette version</translation>
    </message>
    <message>
        <source>The computer does not say which bootloader it has</source>
        <translation>L’ordinateur n’indique pas son programme d’amorçage</translation>
    </message>
    <message>
        <source>The computer has refused</source>
        <translation>L’ordinateur a refusé</translation>
    </message>
    <message>
        <source>The computer does not accept this firmware</source>
        <translation>L’ordinateur n’accepte pas ce micrologiciel</translation>
    </message>
    <message>
        <source>The computer has stopped the update</source>
        <translation>L’ordinateur a arrêté la mise à jour</translation>
    </message>
    <message>
        <source>The computer has received the firmware and does not accept it</source>
        <translation>L’ordinateur a reçu le micrologiciel et ne l’accepte pas</translation>
    </message>
    <message>
        <source>An answer of the computer arrived damaged</source>
        <translation>Une réponse de l’ordinateur est arrivée abîmée</translation>
    </message>
    <message>
        <source>Part of an answer did not arrive</source>
        <translation>Une partie d’une réponse n’est pas arrivée</translation>
    </message>
    <message>
        <source>The computer’s answer was too long</source>
        <translation>La réponse de l’ordinateur était trop longue</translation>
    </message>
    <message>
        <source>An answer of the computer could not be understood</source>
        <translation>Une réponse de l’ordinateur n’a pas été comprise</translation>
    </message>
    <message>
        <source>The connection carries too little at a time</source>
        <translation>La connexion transporte trop peu à la fois</translation>
    </message>
    <message>
        <source>Another program is connected to the computer too</source>
        <translation>Un autre programme est aussi connecté à l’ordinateur</translation>
    </message>
    <message>
        <source>The computer does not answer</source>
        <translation>L’ordinateur ne répond pas</translation>
    </message>
    <message>
        <source>The computer did not come to an end with its answer</source>
        <translation>L’ordinateur n’a pas terminé sa réponse</translation>
    </message>
    <message>
        <source>It took too long</source>
        <translation>Cela a duré trop longtemps</translation>
    </message>
    <message>
        <source>The connection was lost</source>
        <translation>La connexion a été perdue</translation>
    </message>
    <message>
        <source>The computer could not be connected</source>
        <translation>L’ordinateur n’a pas pu être connecté</translation>
    </message>
    <message>
        <source>This device is not a diving computer that the app knows</source>
        <translation>Cet appareil n’est pas un ordinateur de plongée que l’application connaît</translation>
    </message>
    <message>
        <source>The computer offers another kind of connection</source>
        <translation>L’ordinateur propose une autre sorte de connexion</translation>
    </message>
    <message>
        <source>Your system did not send the request</source>
        <translation>Votre système n’a pas envoyé la demande</translation>
    </message>
    <message>
        <source>No Bluetooth was found here</source>
        <translation>Aucun Bluetooth n’a été trouvé ici</translation>
    </message>
    <message>
        <source>Bluetooth is switched off</source>
        <translation>Le Bluetooth est désactivé</translation>
    </message>
    <message>
        <source>The Bluetooth adapter was removed</source>
        <translation>L’adaptateur Bluetooth a été retiré</translation>
    </message>
    <message>
        <source>The Bluetooth service of your system does not run</source>
        <translation>Le service Bluetooth de votre système n’est pas lancé</translation>
    </message>
    <message>
        <source>The Bluetooth service of your system does not respond</source>
        <translation>Le service Bluetooth de votre système ne répond pas</translation>
    </message>
    <message>
        <source>This app may not use Bluetooth</source>
        <translation>Cette application n’a pas le droit d’utiliser le Bluetooth</translation>
    </message>
    <message>
        <source>Bluetooth does not work with diving computers here</source>
        <translation>Le Bluetooth de cet appareil ne convient pas aux ordinateurs de plongée</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>Annulé</translation>
    </message>
    <message>
        <source>Cancelled, as the computer was disconnected</source>
        <translation>Annulé, car l’ordinateur a été déconnecté</translation>
    </message>
    <message>
        <source>Cancelled, as another computer was chosen</source>
        <translation>Annulé, car un autre ordinateur a été choisi</translation>
    </message>
    <message>
        <source>Cancelled, as the app was closing</source>
        <translation>Annulé, car l’application se fermait</translation>
    </message>
    <message>
        <source>The computer was not found</source>
        <translation>L’ordinateur n’a pas été trouvé</translation>
    </message>
    <message>
        <source>More than one computer is in reach</source>
        <translation>Plusieurs ordinateurs sont à portée</translation>
    </message>
    <message>
        <source>Another part of the app is using the computer</source>
        <translation>Une autre partie de l’application utilise l’ordinateur</translation>
    </message>
    <message>
        <source>The computer was found, but did not connect</source>
        <translation>L’ordinateur a été trouvé, mais ne s’est pas connecté</translation>
    </message>
    <message>
        <source>The dives could not be saved</source>
        <translation>Les plongées n’ont pas pu être enregistrées</translation>
    </message>
    <message>
        <source>This did not work</source>
        <translation>Cela n’a pas fonctionné</translation>
    </message>
    <message>
        <source>Check what you have entered, then try again.</source>
        <translation>Vérifiez ce que vous avez entré, puis réessayez.</translation>
    </message>
    <message>
        <source>Enter a shorter one.</source>
        <translation>Entrez-en un plus court.</translation>
    </message>
    <message>
        <source>Choose a file that is made for this model.</source>
        <translation>Choisissez un fichier prévu pour ce modèle.</translation>
    </message>
    <message>
        <source>There is nothing to do. Install it again only if the computer does not work well.</source>
        <translation>Il n’y a rien à faire. Ne l’installez à nouveau que si l’ordinateur fonctionne mal.</translation>
    </message>
    <message>
        <source>Restart the computer, then try again.</source>
        <translation>Redémarrez l’ordinateur, puis réessayez.</translation>
    </message>
    <message>
        <source>Leave the computer switched on and near, then try again.</source>
        <translation>Laissez l’ordinateur allumé et à proximité, puis réessayez.</translation>
    </message>
    <message>
        <source>Move nearer to the computer, then try again.</source>
        <translation>Rapprochez-vous de l’ordinateur, puis réessayez.</translation>
    </message>
    <message>
        <source>Switch Bluetooth off and on again on this machine, then try again.</source>
        <translation>Désactivez puis réactivez le Bluetooth de cet appareil, puis réessayez.</translation>
    </message>
    <message>
        <source>Close the other program, then try again.</source>
        <translation>Fermez l’autre programme, puis réessayez.</translation>
    </message>
    <message>
        <source>Look whether the computer is still on and near, then try again.</source>
        <translation>Vérifiez que l’ordinateur est toujours allumé et à proximité, puis réessayez.</translation>
    </message>
    <message>
        <source>Keep the computer switched on and near, then try again.</source>
        <translation>Gardez l’ordinateur allumé et à proximité, puis réessayez.</translation>
    </message>
    <message>
        <source>Switch on the Bluetooth mode of the computer, keep it near, then try again.</source>
        <translation>Activez le mode Bluetooth de l’ordinateur, gardez-le à proximité, puis réessayez.</translation>
    </message>
    <message>
        <source>Choose your computer from the list.</source>
        <translation>Choisissez votre ordinateur dans la liste.</translation>
    </message>
    <message>
        <source>Choose the computer from the list once more.</source>
        <translation>Choisissez encore une fois l’ordinateur dans la liste.</translation>
    </message>
    <message>
        <source>Plug in a Bluetooth adapter, then try again.</source>
        <translation>Branchez un adaptateur Bluetooth, puis réessayez.</translation>
    </message>
    <message>
        <source>Switch it on in the settings of your system, then try again.</source>
        <translation>Activez-le dans les réglages de votre système, puis réessayez.</translation>
    </message>
    <message>
        <source>Plug it in again, then try again.</source>
        <translation>Rebranchez-le, puis réessayez.</translation>
    </message>
    <message>
        <source>Start the Bluetooth service, or restart this machine, then try again.</source>
        <translation>Lancez le service Bluetooth ou redémarrez cet appareil, puis réessayez.</translation>
    </message>
    <message>
        <source>Restart this machine, then try again.</source>
        <translation>Redémarrez cet appareil, puis réessayez.</translation>
    </message>
    <message>
        <source>Allow it in the settings of your system, then try again.</source>
        <translation>Autorisez-la dans les réglages de votre système, puis réessayez.</translation>
    </message>
    <message>
        <source>Use a machine with Bluetooth 4.0 or newer.</source>
        <translation>Utilisez un appareil avec Bluetooth 4.0 ou plus récent.</translation>
    </message>
    <message>
        <source>Start it again when you like.</source>
        <translation>Relancez quand vous voulez.</translation>
    </message>
    <message>
        <source>Switch the computer on, choose its Bluetooth mode, keep it near, then try again.</source>
        <translation>Allumez l’ordinateur, choisissez son mode Bluetooth, gardez-le à proximité, puis réessayez.</translation>
    </message>
    <message>
        <source>Wait until that has finished, then try again.</source>
        <translation>Attendez qu’elle ait terminé, puis réessayez.</translation>
    </message>
    <message>
        <source>Disconnect it from your phone and from other machines, then try again.</source>
        <translation>Déconnectez-le de votre téléphone et d’autres appareils, puis réessayez.</translation>
    </message>
    <message>
        <source>Look at the file with the dives in the settings.</source>
        <translation>Regardez le fichier des plongées dans les réglages.</translation>
    </message>
    <message>
        <source>Try again.</source>
        <translation>Réessayez.</translation>
    </message>
    <message>
        <source>It may have been done all the same: look at the computer before you try again.</source>
        <translation>Cela a peut-être été fait malgré tout&#xa0;: regardez l’ordinateur avant de réessayer.</translation>
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
    <name>SaveDialog</name>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>Replace this file?</source>
        <translation>Remplacer ce fichier ?</translation>
    </message>
    <message>
        <source>“%1” is there already.</source>
        <translation>« %1 » existe déjà.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacer</translation>
    </message>
</context>
<context>
    <name>ScreensCard</name>
    <message>
        <source>Layout %1</source>
        <translation>Écran %1</translation>
    </message>
    <message>
        <source>Screens</source>
        <translation>Écrans</translation>
    </message>
    <message>
        <source>The screen layouts in the computer, and the one of each dive mode.</source>
        <translation>Les mises en page des écrans de l’ordinateur, et celle de chaque mode de plongée.</translation>
    </message>
    <message>
        <source>There are no layouts in the computer.</source>
        <translation>Il n’y a pas de mise en page dans l’ordinateur.</translation>
    </message>
    <message>
        <source>Save %1 in a file</source>
        <translation>Enregistrer %1 dans un fichier</translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation>Retirer %1</translation>
    </message>
    <message>
        <source>Add from a file…</source>
        <translation>Ajouter depuis un fichier…</translation>
    </message>
    <message>
        <source>In use</source>
        <translation>En service</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Dive mode %1</source>
        <translation>Mode de plongée %1</translation>
    </message>
    <message>
        <source>Layout of dive mode %1</source>
        <translation>Mise en page du mode de plongée %1</translation>
    </message>
    <message>
        <source>Reading the layout</source>
        <translation>Lecture de la mise en page</translation>
    </message>
    <message>
        <source>Changing the layouts</source>
        <translation>Modification des mises en page</translation>
    </message>
    <message>
        <source>Choose another layout, or remove one to make room.</source>
        <translation>Choisissez une autre mise en page, ou retirez-en une pour faire de la place.</translation>
    </message>
    <message>
        <source>Add a layout</source>
        <translation>Ajouter une mise en page</translation>
    </message>
    <message>
        <source>Save the layout</source>
        <translation>Enregistrer la mise en page</translation>
    </message>
    <message>
        <source>Remove this layout?</source>
        <translation>Retirer cette mise en page&#xa0;?</translation>
    </message>
    <message>
        <source>“%1” is lost unless you have saved it in a file. Dive modes that use it are left without a layout.</source>
        <translation>«&#xa0;%1&#xa0;» sera perdue si vous ne l’avez pas enregistrée dans un fichier. Les modes de plongée qui l’utilisent restent sans mise en page.</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Retirer</translation>
    </message>
</context>
<context>
    <name>Section</name>
    <message>
        <source>Read</source>
        <translation>Lire</translation>
    </message>
    <message>
        <source>Read from the computer: %1</source>
        <translation>Lire dans l’ordinateur&#xa0;: %1</translation>
    </message>
    <message>
        <source>Read again: %1</source>
        <translation>Relire&#xa0;: %1</translation>
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
            <numerusform>La première d’entre elles</numerusform>
            <numerusform>Les %n premières</numerusform>
        </translation>
    </message>
    <message>
        <source>Dive %1</source>
        <translation>Plongée %1</translation>
    </message>
    <message>
        <source>The picture could not be saved</source>
        <translation>L’image n’a pas pu être enregistrée</translation>
    </message>
    <message>
        <source>End its name with .svg, .png or .pdf.</source>
        <translation>Terminez son nom par .svg, .png ou .pdf.</translation>
    </message>
    <message>
        <source>Choose another place, or make room there.</source>
        <translation>Choisissez un autre emplacement, ou libérez-y de la place.</translation>
    </message>
    <message>
        <source>Saved as %1</source>
        <translation>Enregistrée sous %1</translation>
    </message>
    <message>
        <source>Save as a picture…</source>
        <translation>Enregistrer comme image…</translation>
    </message>
    <message>
        <source>Save the comparison</source>
        <translation>Enregistrer la comparaison</translation>
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
        <translation>Essayez tout sans ordinateur de plongée et sans Bluetooth. L’application redémarre&#xa0;; vos propres plongées restent telles quelles.</translation>
    </message>
    <message>
        <source>The app could not start again</source>
        <translation>L’application n’a pas pu redémarrer</translation>
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
        <translation>Dès qu’il y en aura, cette page en fera le bilan.</translation>
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
        <translation>Sous l’eau</translation>
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
    <message>
        <source>No dive found</source>
        <translation>Aucune plongée trouvée</translation>
    </message>
    <message>
        <source>Change the search or the filter.</source>
        <translation>Modifiez la recherche ou le filtre.</translation>
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
        <translation>Le disque est plein&#xa0;: rien n’a été enregistré</translation>
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
        <translation>Ce fichier vient d’une version plus récente de l’application</translation>
    </message>
    <message>
        <source>Another program is using the file with the dives</source>
        <translation>Un autre programme utilise le fichier des plongées</translation>
    </message>
    <message>
        <source>A part of the app is missing: the driver for SQLite</source>
        <translation>Il manque une partie de l’application&#xa0;: le pilote SQLite</translation>
    </message>
    <message>
        <source>This dive is no longer in the file</source>
        <translation>Cette plongée n’est plus dans le fichier</translation>
    </message>
    <message>
        <source>The file with the dives could not be opened</source>
        <translation>Le fichier des plongées n’a pas pu être ouvert</translation>
    </message>
    <message>
        <source>The file with the dives could not be used</source>
        <translation>Le fichier des plongées n’a pas pu être utilisé</translation>
    </message>
    <message>
        <source>Allow yourself to write the file and its folder, or choose another file in the settings.</source>
        <translation>Donnez-vous le droit d’écrire dans le fichier et son dossier, ou choisissez un autre fichier dans les réglages.</translation>
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
        <translation>Attendez que l’autre programme ait fini, puis réessayez.</translation>
    </message>
    <message>
        <source>Install the SQLite driver of Qt, then start the app again.</source>
        <translation>Installez le pilote SQLite de Qt, puis relancez l’application.</translation>
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
    <name>SyncCard</name>
    <message>
        <source>Searching</source>
        <translation>Recherche en cours</translation>
    </message>
    <message>
        <source>Connecting</source>
        <translation>Connexion en cours</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Waiting for the end of an answer</source>
        <translation>En attente de la fin d’une réponse</translation>
    </message>
    <message>
        <source>Disconnecting</source>
        <translation>Déconnexion en cours</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Non connecté</translation>
    </message>
    <message numerus="yes">
        <source>%n new dive(s) saved.</source>
        <translation>
            <numerusform>%n nouvelle plongée enregistrée.</numerusform>
            <numerusform>%n nouvelles plongées enregistrées.</numerusform>
        </translation>
    </message>
    <message>
        <source>No new dives.</source>
        <translation>Pas de nouvelle plongée.</translation>
    </message>
    <message numerus="yes">
        <source>%n dive(s) arrived damaged. The next synchronisation asks for them again.</source>
        <translation>
            <numerusform>%n plongée est arrivée abîmée. La prochaine synchronisation la redemandera.</numerusform>
            <numerusform>%n plongées sont arrivées abîmées. La prochaine synchronisation les redemandera.</numerusform>
        </translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Annulé.</translation>
    </message>
    <message>
        <source>Looking for new dives</source>
        <translation>Recherche de nouvelles plongées</translation>
    </message>
    <message>
        <source>Dive %1 of %2</source>
        <translation>Plongée %1 sur %2</translation>
    </message>
    <message>
        <source>Connection</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Synchronising</source>
        <translation>Synchronisation…</translation>
    </message>
    <message>
        <source>Synchronise</source>
        <translation>Synchroniser</translation>
    </message>
    <message>
        <source>Synchronisation</source>
        <translation>Synchronisation</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Cancel the synchronisation</source>
        <translation>Annuler la synchronisation</translation>
    </message>
    <message>
        <source>Show the dives</source>
        <translation>Voir les plongées</translation>
    </message>
    <message>
        <source>Keep the computer switched on and near.</source>
        <translation>Gardez l’ordinateur allumé et à proximité.</translation>
    </message>
    <message>
        <source>Connect again</source>
        <translation>Se reconnecter</translation>
    </message>
    <message>
        <source>Connect</source>
        <translation>Se connecter</translation>
    </message>
    <message>
        <source>Stop connecting</source>
        <translation>Arrêter la connexion</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Se déconnecter</translation>
    </message>
    <message>
        <source>Another computer…</source>
        <translation>Autre ordinateur…</translation>
    </message>
</context>
<context>
    <name>TimeLeft</name>
    <message>
        <source>less than a minute left</source>
        <translation>moins d’une minute restante</translation>
    </message>
    <message numerus="yes">
        <source>about %n minute(s) left</source>
        <translation>
            <numerusform>environ %n minute restante</numerusform>
            <numerusform>environ %n minutes restantes</numerusform>
        </translation>
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
        <source>Another maker’s</source>
        <translation>D’une autre marque</translation>
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
</TS>

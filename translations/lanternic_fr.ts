<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="fr_FR">
<context>
    <name>ChangeNotice</name>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>%1: new incident — %2</source>
        <translation>%1 : nouvel incident — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>et %n autre</numerusform><numerusform>et %n autres</numerusform></translation>
    </message>
    <message>
        <source>%1 recovered</source>
        <translation>%1 est rétabli</translation>
    </message>
    <message>
        <source>%1 is %2</source>
        <translation>%1 est %2</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message>
        <source>%1 went %2 and recovered</source>
        <translation>%1 a été %2 puis s’est rétabli</translation>
    </message>
    <message>
        <source>%1 went %2 and is %3 now</source>
        <translation>%1 a été %2 et est maintenant %3</translation>
    </message>
    <message>
        <source>While quiet</source>
        <translation>Pendant le silence</translation>
    </message>
    <message>
        <source>; </source>
        <translation> ; </translation>
    </message>
    <message>
        <source>%1 is under maintenance</source>
        <translation>%1 est en maintenance</translation>
    </message>
    <message>
        <source>%1 — under maintenance</source>
        <translation>%1 — en maintenance</translation>
    </message>
</context>
<context>
    <name>DisplaySummary</name>
    <message>
        <source>No sources configured</source>
        <translation>Aucune source configurée</translation>
    </message>
    <message numerus="yes">
        <source>%n down</source>
        <translation><numerusform>%n en panne</numerusform><numerusform>%n en panne</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n degraded</source>
        <translation><numerusform>%n dégradé</numerusform><numerusform>%n dégradés</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n unknown</source>
        <translation><numerusform>%n inconnu</numerusform><numerusform>%n inconnus</numerusform></translation>
    </message>
    <message>
        <source>All systems operational</source>
        <translation>Tous les systèmes fonctionnent</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
    <message>
        <source>%1 · %2</source>
        <translation>%1 · %2</translation>
    </message>
    <message>
        <source>Under maintenance</source>
        <translation>En maintenance</translation>
    </message>
    <message>
        <source>Under maintenance until %1</source>
        <translation>En maintenance jusqu’à %1</translation>
    </message>
</context>
<context>
    <name>DisplayText</name>
    <message>
        <source>Never updated</source>
        <translation>Jamais mis à jour</translation>
    </message>
    <message>
        <source>Updated just now</source>
        <translation>Mis à jour à l’instant</translation>
    </message>
    <message numerus="yes">
        <source>Updated %ns ago</source>
        <translation><numerusform>Mis à jour il y a %n s</numerusform><numerusform>Mis à jour il y a %n s</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nm ago</source>
        <translation><numerusform>Mis à jour il y a %n min</numerusform><numerusform>Mis à jour il y a %n min</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nd ago</source>
        <translation><numerusform>Mis à jour il y a %n jour</numerusform><numerusform>Mis à jour il y a %n jours</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nh ago</source>
        <translation><numerusform>Mis à jour il y a %n h</numerusform><numerusform>Mis à jour il y a %n h</numerusform></translation>
    </message>
    <message>
        <source>until resolved</source>
        <translation>jusqu’à résolution</translation>
    </message>
    <message>
        <source>forever</source>
        <translation>pour toujours</translation>
    </message>
    <message>
        <source>%1d %2h left</source>
        <translation>encore %1 j %2 h</translation>
    </message>
    <message>
        <source>%1h %2m left</source>
        <translation>encore %1 h %2 min</translation>
    </message>
    <message>
        <source>%1m left</source>
        <translation>encore %1 min</translation>
    </message>
    <message>
        <source>just now</source>
        <translation>à l’instant</translation>
    </message>
    <message numerus="yes">
        <source>%n min ago</source>
        <translation><numerusform>il y a %n min</numerusform><numerusform>il y a %n min</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n h ago</source>
        <translation><numerusform>il y a %n h</numerusform><numerusform>il y a %n h</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n d ago</source>
        <translation><numerusform>il y a %n jour</numerusform><numerusform>il y a %n jours</numerusform></translation>
    </message>
    <message>
        <source>operational</source>
        <translation>opérationnel</translation>
    </message>
    <message>
        <source>degraded performance</source>
        <translation>performances dégradées</translation>
    </message>
    <message>
        <source>partial outage</source>
        <translation>panne partielle</translation>
    </message>
    <message>
        <source>major outage</source>
        <translation>panne majeure</translation>
    </message>
    <message>
        <source>under maintenance</source>
        <translation>en maintenance</translation>
    </message>
    <message>
        <source>Identified</source>
        <translation>Cause identifiée</translation>
    </message>
    <message>
        <source>Monitoring</source>
        <translation>Sous surveillance</translation>
    </message>
    <message>
        <source>Resolved</source>
        <translation>Résolu</translation>
    </message>
    <message>
        <source>Investigating</source>
        <translation>Analyse en cours</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>%1 (updated %2)</source>
        <translation>%1 (mis à jour %2)</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Aujourd’hui</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <translation>Demain</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Hier</translation>
    </message>
    <message>
        <source>until %1 %2</source>
        <translation>jusqu’à %1 %2</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>à partir de %1</translation>
    </message>
    <message>
        <source>Maintenance: %1</source>
        <translation>Maintenance : %1</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
</context>
<context>
    <name>Health</name>
    <message>
        <source>Operational</source>
        <translation>Opérationnel</translation>
    </message>
    <message>
        <source>Degraded</source>
        <translation>Dégradé</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>En panne</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>operational</source>
        <translation>opérationnel</translation>
    </message>
    <message>
        <source>degraded</source>
        <translation>dégradé</translation>
    </message>
    <message>
        <source>down</source>
        <translation>en panne</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>inconnu</translation>
    </message>
</context>
<context>
    <name>HistoryReport</name>
    <message>
        <source>%1 min</source>
        <translation>%1 min</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 h</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 h %2 min</translation>
    </message>
    <message>
        <source>%1 d %2 h</source>
        <translation>%1 j %2 h</translation>
    </message>
    <message>
        <source>%1 – ongoing</source>
        <translation>%1 – en cours</translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Launch at login is not supported on this system yet.</source>
        <translation>Le lancement à l’ouverture de session n’est pas encore pris en charge sur ce système.</translation>
    </message>
    <message>
        <source>Could not create the folder %1.</source>
        <translation>Impossible de créer le dossier %1.</translation>
    </message>
    <message>
        <source>Could not write %1: %2</source>
        <translation>Impossible d’écrire %1 : %2</translation>
    </message>
    <message>
        <source>Could not remove %1: %2</source>
        <translation>Impossible de supprimer %1 : %2</translation>
    </message>
</context>
<context>
    <name>Network</name>
    <message>
        <source>Link-local address refused</source>
        <translation>Adresse lien-local refusée</translation>
    </message>
    <message>
        <source>Redirect from a public to a private address refused</source>
        <translation>Redirection d’une adresse publique vers une adresse privée refusée</translation>
    </message>
    <message>
        <source>Redirect to another kind of address refused</source>
        <translation>Redirection vers un autre type d’adresse refusée</translation>
    </message>
    <message>
        <source>Redirect from https to http refused</source>
        <translation>Redirection de https vers http refusée</translation>
    </message>
    <message>
        <source>Too many redirects</source>
        <translation>Trop de redirections</translation>
    </message>
    <message>
        <source>The response is larger than 16 MiB</source>
        <translation>La réponse dépasse 16 Mio</translation>
    </message>
    <message>
        <source>No answer within %1 s</source>
        <translation>Aucune réponse en %1 s</translation>
    </message>
    <message>
        <source>No connection within %1 s</source>
        <translation>Aucune connexion en %1 s</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>La requête a expiré</translation>
    </message>
</context>
<context>
    <name>PaneText</name>
    <message numerus="yes">
        <source>… (and %n other(s))</source>
        <translation><numerusform>… (et %n autre)</numerusform><numerusform>… (et %n autres)</numerusform></translation>
    </message>
    <message>
        <source>Silence %1 - %2 [%3]</source>
        <translation>Mettre %1 en sourdine - %2 [%3]</translation>
    </message>
    <message>
        <source>Silence %1 (ALL)</source>
        <translation>Mettre %1 en sourdine (TOUT)</translation>
    </message>
</context>
<context>
    <name>SilenceStore</name>
    <message>
        <source>For 2 hours</source>
        <translation>Pendant 2 heures</translation>
    </message>
    <message>
        <source>For 1 day</source>
        <translation>Pendant 1 jour</translation>
    </message>
    <message>
        <source>For 2 days</source>
        <translation>Pendant 2 jours</translation>
    </message>
    <message>
        <source>For 1 week</source>
        <translation>Pendant 1 semaine</translation>
    </message>
    <message>
        <source>Until resolved</source>
        <translation>Jusqu’à résolution</translation>
    </message>
    <message>
        <source>Forever</source>
        <translation>Pour toujours</translation>
    </message>
</context>
<context>
    <name>SourceRegistry</name>
    <message>
        <source>no “=”</source>
        <translation>pas de « = »</translation>
    </message>
    <message>
        <source>no label</source>
        <translation>pas de libellé</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>pas d’adresse</translation>
    </message>
    <message>
        <source>%1:// is not supported</source>
        <translation>%1:// n’est pas pris en charge</translation>
    </message>
    <message>
        <source>no host</source>
        <translation>pas d’hôte</translation>
    </message>
    <message>
        <source>feed</source>
        <translation>flux</translation>
    </message>
    <message>
        <source>to be probed</source>
        <translation>à sonder</translation>
    </message>
    <message>
        <source>line %1: ignored — %2</source>
        <translation>ligne %1 : ignorée — %2</translation>
    </message>
    <message>
        <source>line %1: %2 → %3 (%4)</source>
        <translation>ligne %1 : %2 → %3 (%4)</translation>
    </message>
    <message>
        <source>%1, the same feed as line %2</source>
        <translation>%1, le même flux que la ligne %2</translation>
    </message>
</context>
<context>
    <name>SourceResult</name>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message numerus="yes">
        <source>%n components affected</source>
        <translation><numerusform>%n composant touché</numerusform><numerusform>%n composants touchés</numerusform></translation>
    </message>
</context>
<context>
    <name>Sources</name>
    <message>
        <source>All Systems Operational</source>
        <translation>Tous les systèmes fonctionnent</translation>
    </message>
    <message>
        <source>Active incident</source>
        <translation>Incident en cours</translation>
    </message>
    <message>
        <source>Unrecognized status format</source>
        <translation>Format de statut non reconnu</translation>
    </message>
    <message>
        <source>Bad server response (HTTP %1)</source>
        <translation>Réponse incorrecte du serveur (HTTP %1)</translation>
    </message>
    <message>
        <source>Could not reach status page</source>
        <translation>Page de statut injoignable</translation>
    </message>
    <message>
        <source>Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary</source>
        <translation>La réponse n’était ni lanternic.v1, ni incident.io, ni Updog, ni un résumé Statuspage</translation>
    </message>
    <message>
        <source>No outages detected</source>
        <translation>Aucune panne détectée</translation>
    </message>
    <message>
        <source>Not monitored by Updog</source>
        <translation>Non surveillé par Updog</translation>
    </message>
    <message>
        <source>Outage detected — %1</source>
        <translation>Panne détectée — %1</translation>
    </message>
    <message>
        <source>Outage detected</source>
        <translation>Panne détectée</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>Lanternic — %1</source>
        <translation>Lanternic — %1</translation>
    </message>
</context>
<context>
    <name>lanternic::AdvancedSettingsView</name>
    <message>
        <source>Maintenance</source>
        <translation>Maintenance</translation>
    </message>
    <message>
        <source>Treat maintenance as operational</source>
        <translation>Considérer la maintenance comme opérationnelle</translation>
    </message>
    <message>
        <source>Components a status page lists as under maintenance count as operational: planned work turns nothing orange.</source>
        <translation>Les composants qu’une page de statut indique en maintenance comptent comme opérationnels : les travaux prévus ne colorent rien en orange.</translation>
    </message>
</context>
<context>
    <name>lanternic::AppDelegate</name>
    <message>
        <source>Download</source>
        <translation>Télécharger</translation>
    </message>
    <message>
        <source>Lanternic Settings</source>
        <translation>Réglages de Lanternic</translation>
    </message>
</context>
<context>
    <name>lanternic::CatalogPicker</name>
    <message>
        <source>Search %1 public status pages</source>
        <translation>Rechercher parmi %1 pages de statut publiques</translation>
    </message>
    <message>
        <source>Search services</source>
        <translation>Rechercher des services</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Services</translation>
    </message>
    <message>
        <source>↑ ↓ to choose, Enter to add, Esc to close</source>
        <translation>↑ ↓ pour choisir, Entrée pour ajouter, Échap pour fermer</translation>
    </message>
    <message>
        <source>  ✓ added</source>
        <translation>  ✓ ajouté</translation>
    </message>
    <message>
        <source>%1, already among your sources</source>
        <translation>%1, déjà parmi vos sources</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Ajouter un service</translation>
    </message>
</context>
<context>
    <name>lanternic::GeneralSettingsView</name>
    <message>
        <source>One per line, in "Label=host" form, e.g.
GitHub=www.githubstatus.com
Leave blank for the defaults (GitHub, Cloudflare, Datadog, OpenAI, Claude).</source>
        <translation>Une par ligne, sous la forme « Libellé=hôte », par ex.
GitHub=www.githubstatus.com
Laisser vide pour les sources par défaut (GitHub, Cloudflare, Datadog, OpenAI, Claude).</translation>
    </message>
    <message>
        <source>Status sources</source>
        <translation>Sources de statut</translation>
    </message>
    <message>
        <source>Add service…</source>
        <translation>Ajouter un service…</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Ajouter un service</translation>
    </message>
    <message>
        <source>Show operational systems</source>
        <translation>Afficher les systèmes opérationnels</translation>
    </message>
    <message>
        <source>Notify me when a service changes</source>
        <translation>M’avertir quand un service change</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Lancer à l’ouverture de session</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Rechercher automatiquement les mises à jour</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Vérifier maintenant</translation>
    </message>
    <message>
        <source>Updates come from your package manager</source>
        <translation>Les mises à jour viennent de votre gestionnaire de paquets</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Intervalle d’actualisation</translation>
    </message>
    <message>
        <source>%1m</source>
        <translation>%1 min</translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation><numerusform>%n minute</numerusform><numerusform>%n minutes</numerusform></translation>
    </message>
    <message>
        <source>ignored — %1</source>
        <translation>ignorée — %1</translation>
    </message>
    <message>
        <source>%1, as line %2</source>
        <translation>%1, comme la ligne %2</translation>
    </message>
</context>
<context>
    <name>lanternic::HistorySparkline</name>
    <message>
        <source>No history yet</source>
        <translation>Pas encore d’historique</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>History: %1</source>
        <translation>Historique : %1</translation>
    </message>
    <message>
        <source>, </source>
        <translation>, </translation>
    </message>
</context>
<context>
    <name>lanternic::LanternicPane</name>
    <message>
        <source>SILENCED %1</source>
        <translation>EN SOURDINE %1</translation>
    </message>
    <message>
        <source>SILENCED</source>
        <translation>EN SOURDINE</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Sources</translation>
    </message>
    <message>
        <source>Nothing to report — all operational</source>
        <translation>Rien à signaler — tout fonctionne</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Réglages…</translation>
    </message>
    <message>
        <source>Quit Lanternic</source>
        <translation>Quitter Lanternic</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Défilement</translation>
    </message>
    <message>
        <source>Resume notifications (paused until %1)</source>
        <translation>Reprendre les notifications (en pause jusqu’à %1)</translation>
    </message>
    <message>
        <source>Pause notifications for 1 hour</source>
        <translation>Suspendre les notifications pendant 1 heure</translation>
    </message>
    <message>
        <source>Offline · %1</source>
        <translation>Hors ligne · %1</translation>
    </message>
</context>
<context>
    <name>lanternic::LanternicStore</name>
    <message>
        <source>Checking…</source>
        <translation>Vérification…</translation>
    </message>
    <message>
        <source>Relay loop</source>
        <translation>Boucle de relais</translation>
    </message>
    <message>
        <source>This relay feed already passed through this watcher</source>
        <translation>Ce flux relais est déjà passé par ce veilleur</translation>
    </message>
</context>
<context>
    <name>lanternic::NotificationSettingsView</name>
    <message>
        <source>Quiet hours</source>
        <translation>Heures de silence</translation>
    </message>
    <message>
        <source>Hold notifications back every night</source>
        <translation>Retenir les notifications chaque nuit</translation>
    </message>
    <message>
        <source>From</source>
        <translation>De</translation>
    </message>
    <message>
        <source>until</source>
        <translation>à</translation>
    </message>
    <message>
        <source>Quiet hours start</source>
        <translation>Début des heures de silence</translation>
    </message>
    <message>
        <source>Quiet hours end</source>
        <translation>Fin des heures de silence</translation>
    </message>
    <message>
        <source>Nothing pops up during these hours. When they end, one notification sums up what changed meanwhile and how things stand.</source>
        <translation>Rien ne s’affiche pendant ces heures. À la fin, une notification résume ce qui a changé entre-temps et l’état actuel.</translation>
    </message>
    <message>
        <source>These settings apply while “Notify me when a service changes” is on in General; that switch turns every notification on and off.</source>
        <translation>Ces réglages s’appliquent tant que « M’avertir quand un service change » est activé dans Général ; ce bouton active et désactive toutes les notifications.</translation>
    </message>
</context>
<context>
    <name>lanternic::Notifier</name>
    <message>
        <source>Open status page</source>
        <translation>Ouvrir la page de statut</translation>
    </message>
    <message>
        <source>Silence for 1 hour</source>
        <translation>Mettre en sourdine pendant 1 heure</translation>
    </message>
    <message>
        <source>Open panel</source>
        <translation>Ouvrir le panneau</translation>
    </message>
</context>
<context>
    <name>lanternic::RefreshButton</name>
    <message>
        <source>Refresh</source>
        <translation>Actualiser</translation>
    </message>
</context>
<context>
    <name>lanternic::SettingsView</name>
    <message>
        <source>General</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notifications</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avancé</translation>
    </message>
    <message>
        <source>About Lanternic</source>
        <translation>À propos de Lanternic</translation>
    </message>
    <message>
        <source>About</source>
        <translation>À propos</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Watches the public status pages of the services you depend on.</source>
        <translation>Surveille les pages d’état publiques des services dont vous dépendez.</translation>
    </message>
    <message>
        <source>The catalogue of status pages</source>
        <translation>Le catalogue des pages d’état</translation>
    </message>
</context>
<context>
    <name>lanternic::SilencedRowView</name>
    <message>
        <source>Unmute</source>
        <translation>Réactiver</translation>
    </message>
</context>
<context>
    <name>lanternic::Spinner</name>
    <message>
        <source>Refreshing</source>
        <translation>Actualisation</translation>
    </message>
</context>
<context>
    <name>lanternic::StatusRowView</name>
    <message>
        <source>Open status page</source>
        <translation>Ouvrir la page de statut</translation>
    </message>
    <message>
        <source>Silence or choose notifications</source>
        <translation>Mettre en sourdine ou choisir les notifications</translation>
    </message>
    <message>
        <source>All changes</source>
        <translation>Tous les changements</translation>
    </message>
    <message>
        <source>Outages only</source>
        <translation>Pannes uniquement</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Jamais</translation>
    </message>
    <message>
        <source>Hide what is happening</source>
        <translation>Masquer ce qui se passe</translation>
    </message>
    <message>
        <source>Show what is happening</source>
        <translation>Montrer ce qui se passe</translation>
    </message>
    <message>
        <source>Silence %1</source>
        <translation>Mettre %1 en sourdine</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>%1, checked %2</source>
        <translation>%1, vérifié %2</translation>
    </message>
    <message>
        <source>Uptime 24 h %1 · 7 d %2 · 30 d %3</source>
        <translation>Disponibilité 24 h %1 · 7 j %2 · 30 j %3</translation>
    </message>
    <message>
        <source>%1 · %2 (%3)</source>
        <translation>%1 · %2 (%3)</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historique</translation>
    </message>
    <message>
        <source>Maintenance</source>
        <translation>Maintenance</translation>
    </message>
    <message numerus="yes">
        <source>%n open incident(s)</source>
        <translation><numerusform>%n incident en cours</numerusform><numerusform>%n incidents en cours</numerusform></translation>
    </message>
    <message>
        <source>Open incident</source>
        <translation>Ouvrir l’incident</translation>
    </message>
    <message>
        <source>In progress · %1</source>
        <translation>En cours · %1</translation>
    </message>
    <message>
        <source>Scheduled · %1</source>
        <translation>Prévue · %1</translation>
    </message>
    <message>
        <source>Open maintenance</source>
        <translation>Ouvrir la maintenance</translation>
    </message>
    <message>
        <source>%1 · updated %2</source>
        <translation>%1 · mis à jour %2</translation>
    </message>
    <message>
        <source>Notify me</source>
        <translation>M’avertir</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>et %n autre</numerusform><numerusform>et %n autres</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::TimelineBar</name>
    <message numerus="yes">
        <source>Last 7 days: %1 operational, %n stretch(es) of trouble</source>
        <translation><numerusform>7 derniers jours : %1 opérationnel, %n période de problème</numerusform><numerusform>7 derniers jours : %1 opérationnel, %n périodes de problèmes</numerusform></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>not watched</source>
        <translation>non surveillé</translation>
    </message>
</context>
<context>
    <name>lanternic::UpdateChecker</name>
    <message>
        <source>Lanternic %1 is available.</source>
        <translation>Lanternic %1 est disponible.</translation>
    </message>
    <message>
        <source>You have the newest version of Lanternic.</source>
        <translation>Vous avez la dernière version de Lanternic.</translation>
    </message>
    <message>
        <source>Could not check for updates: %1</source>
        <translation>Impossible de rechercher les mises à jour : %1</translation>
    </message>
    <message>
        <source>This build of Lanternic gets its updates from your package manager.</source>
        <translation>Cette version de Lanternic reçoit ses mises à jour de votre gestionnaire de paquets.</translation>
    </message>
    <message>
        <source>the update feed answered with HTTP status %1</source>
        <translation>le flux de mises à jour a répondu avec le statut HTTP %1</translation>
    </message>
    <message>
        <source>the update feed lists no release</source>
        <translation>le flux de mises à jour ne liste aucune version</translation>
    </message>
</context>
</TS>
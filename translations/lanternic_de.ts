<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="de_DE">
<context>
    <name>ChangeNotice</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: new incident — %2</source>
        <translation>%1: neuer Vorfall — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>und %n weitere</numerusform><numerusform>und %n weitere</numerusform></translation>
    </message>
    <message>
        <source>%1 recovered</source>
        <translation>%1 läuft wieder</translation>
    </message>
    <message>
        <source>%1 is %2</source>
        <translation>%1 ist %2</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message>
        <source>%1 went %2 and recovered</source>
        <translation>%1 war %2 und läuft wieder</translation>
    </message>
    <message>
        <source>%1 went %2 and is %3 now</source>
        <translation>%1 war %2 und ist jetzt %3</translation>
    </message>
    <message>
        <source>While quiet</source>
        <translation>Während der Ruhezeit</translation>
    </message>
    <message>
        <source>; </source>
        <translation>; </translation>
    </message>
    <message>
        <source>%1 is under maintenance</source>
        <translation>%1 wird gewartet</translation>
    </message>
    <message>
        <source>%1 — under maintenance</source>
        <translation>%1 — in Wartung</translation>
    </message>
</context>
<context>
    <name>DisplaySummary</name>
    <message>
        <source>No sources configured</source>
        <translation>Keine Quellen eingerichtet</translation>
    </message>
    <message numerus="yes">
        <source>%n down</source>
        <translation><numerusform>%n ausgefallen</numerusform><numerusform>%n ausgefallen</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n degraded</source>
        <translation><numerusform>%n beeinträchtigt</numerusform><numerusform>%n beeinträchtigt</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n unknown</source>
        <translation><numerusform>%n unbekannt</numerusform><numerusform>%n unbekannt</numerusform></translation>
    </message>
    <message>
        <source>All systems operational</source>
        <translation>Alle Systeme in Betrieb</translation>
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
        <translation>In Wartung</translation>
    </message>
    <message>
        <source>Under maintenance until %1</source>
        <translation>In Wartung bis %1</translation>
    </message>
</context>
<context>
    <name>DisplayText</name>
    <message>
        <source>Never updated</source>
        <translation>Noch nie aktualisiert</translation>
    </message>
    <message>
        <source>Updated just now</source>
        <translation>Gerade aktualisiert</translation>
    </message>
    <message numerus="yes">
        <source>Updated %ns ago</source>
        <translation><numerusform>Vor %n s aktualisiert</numerusform><numerusform>Vor %n s aktualisiert</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nm ago</source>
        <translation><numerusform>Vor %n Min. aktualisiert</numerusform><numerusform>Vor %n Min. aktualisiert</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nd ago</source>
        <translation><numerusform>Vor %n Tag aktualisiert</numerusform><numerusform>Vor %n Tagen aktualisiert</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nh ago</source>
        <translation><numerusform>Vor %n Std. aktualisiert</numerusform><numerusform>Vor %n Std. aktualisiert</numerusform></translation>
    </message>
    <message>
        <source>until resolved</source>
        <translation>bis behoben</translation>
    </message>
    <message>
        <source>forever</source>
        <translation>für immer</translation>
    </message>
    <message>
        <source>%1d %2h left</source>
        <translation>noch %1 T %2 Std.</translation>
    </message>
    <message>
        <source>%1h %2m left</source>
        <translation>noch %1 Std. %2 Min.</translation>
    </message>
    <message>
        <source>%1m left</source>
        <translation>noch %1 Min.</translation>
    </message>
    <message>
        <source>just now</source>
        <translation>gerade eben</translation>
    </message>
    <message numerus="yes">
        <source>%n min ago</source>
        <translation><numerusform>vor %n Min.</numerusform><numerusform>vor %n Min.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n h ago</source>
        <translation><numerusform>vor %n Std.</numerusform><numerusform>vor %n Std.</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n d ago</source>
        <translation><numerusform>vor %n Tag</numerusform><numerusform>vor %n Tagen</numerusform></translation>
    </message>
    <message>
        <source>operational</source>
        <translation>betriebsbereit</translation>
    </message>
    <message>
        <source>degraded performance</source>
        <translation>eingeschränkte Leistung</translation>
    </message>
    <message>
        <source>partial outage</source>
        <translation>teilweiser Ausfall</translation>
    </message>
    <message>
        <source>major outage</source>
        <translation>schwerer Ausfall</translation>
    </message>
    <message>
        <source>under maintenance</source>
        <translation>in Wartung</translation>
    </message>
    <message>
        <source>Identified</source>
        <translation>Ursache gefunden</translation>
    </message>
    <message>
        <source>Monitoring</source>
        <translation>Wird beobachtet</translation>
    </message>
    <message>
        <source>Resolved</source>
        <translation>Behoben</translation>
    </message>
    <message>
        <source>Investigating</source>
        <translation>Wird untersucht</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (updated %2)</source>
        <translation>%1 (aktualisiert %2)</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <translation>Morgen</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Gestern</translation>
    </message>
    <message>
        <source>until %1 %2</source>
        <translation>bis %1 %2</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>ab %1</translation>
    </message>
    <message>
        <source>Maintenance: %1</source>
        <translation>Wartung: %1</translation>
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
        <translation>Betriebsbereit</translation>
    </message>
    <message>
        <source>Degraded</source>
        <translation>Beeinträchtigt</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Ausgefallen</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Unbekannt</translation>
    </message>
    <message>
        <source>operational</source>
        <translation>betriebsbereit</translation>
    </message>
    <message>
        <source>degraded</source>
        <translation>beeinträchtigt</translation>
    </message>
    <message>
        <source>down</source>
        <translation>ausgefallen</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
</context>
<context>
    <name>HistoryReport</name>
    <message>
        <source>%1 min</source>
        <translation>%1 Min.</translation>
    </message>
    <message>
        <source>%1 h</source>
        <translation>%1 Std.</translation>
    </message>
    <message>
        <source>%1 h %2 min</source>
        <translation>%1 Std. %2 Min.</translation>
    </message>
    <message>
        <source>%1 d %2 h</source>
        <translation>%1 T %2 Std.</translation>
    </message>
    <message>
        <source>%1 – ongoing</source>
        <translation>%1 – andauernd</translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Launch at login is not supported on this system yet.</source>
        <translation>Start bei der Anmeldung wird auf diesem System noch nicht unterstützt.</translation>
    </message>
    <message>
        <source>Could not create the folder %1.</source>
        <translation>Der Ordner %1 konnte nicht angelegt werden.</translation>
    </message>
    <message>
        <source>Could not write %1: %2</source>
        <translation>%1 konnte nicht geschrieben werden: %2</translation>
    </message>
    <message>
        <source>Could not remove %1: %2</source>
        <translation>%1 konnte nicht entfernt werden: %2</translation>
    </message>
</context>
<context>
    <name>Network</name>
    <message>
        <source>Link-local address refused</source>
        <translation>Link-lokale Adresse abgelehnt</translation>
    </message>
    <message>
        <source>Redirect from a public to a private address refused</source>
        <translation>Umleitung von einer öffentlichen auf eine private Adresse abgelehnt</translation>
    </message>
    <message>
        <source>Redirect to another kind of address refused</source>
        <translation>Umleitung auf eine andere Art von Adresse abgelehnt</translation>
    </message>
    <message>
        <source>Redirect from https to http refused</source>
        <translation>Umleitung von https auf http abgelehnt</translation>
    </message>
    <message>
        <source>Too many redirects</source>
        <translation>Zu viele Umleitungen</translation>
    </message>
    <message>
        <source>The response is larger than 16 MiB</source>
        <translation>Die Antwort ist größer als 16 MiB</translation>
    </message>
    <message>
        <source>No answer within %1 s</source>
        <translation>Keine Antwort innerhalb von %1 s</translation>
    </message>
    <message>
        <source>No connection within %1 s</source>
        <translation>Keine Verbindung innerhalb von %1 s</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>Zeitüberschreitung der Anfrage</translation>
    </message>
</context>
<context>
    <name>PaneText</name>
    <message numerus="yes">
        <source>… (and %n other(s))</source>
        <translation><numerusform>… (und %n weitere)</numerusform><numerusform>… (und %n weitere)</numerusform></translation>
    </message>
    <message>
        <source>Silence %1 - %2 [%3]</source>
        <translation>%1 stummschalten - %2 [%3]</translation>
    </message>
    <message>
        <source>Silence %1 (ALL)</source>
        <translation>%1 stummschalten (ALLES)</translation>
    </message>
</context>
<context>
    <name>SilenceStore</name>
    <message>
        <source>For 2 hours</source>
        <translation>Für 2 Stunden</translation>
    </message>
    <message>
        <source>For 1 day</source>
        <translation>Für 1 Tag</translation>
    </message>
    <message>
        <source>For 2 days</source>
        <translation>Für 2 Tage</translation>
    </message>
    <message>
        <source>For 1 week</source>
        <translation>Für 1 Woche</translation>
    </message>
    <message>
        <source>Until resolved</source>
        <translation>Bis behoben</translation>
    </message>
    <message>
        <source>Forever</source>
        <translation>Für immer</translation>
    </message>
</context>
<context>
    <name>SourceRegistry</name>
    <message>
        <source>no “=”</source>
        <translation>kein „=“</translation>
    </message>
    <message>
        <source>no label</source>
        <translation>keine Bezeichnung</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>keine Adresse</translation>
    </message>
    <message>
        <source>%1:// is not supported</source>
        <translation>%1:// wird nicht unterstützt</translation>
    </message>
    <message>
        <source>no host</source>
        <translation>kein Host</translation>
    </message>
    <message>
        <source>feed</source>
        <translation>Feed</translation>
    </message>
    <message>
        <source>to be probed</source>
        <translation>wird erkundet</translation>
    </message>
    <message>
        <source>line %1: ignored — %2</source>
        <translation>Zeile %1: ignoriert — %2</translation>
    </message>
    <message>
        <source>line %1: %2 → %3 (%4)</source>
        <translation>Zeile %1: %2 → %3 (%4)</translation>
    </message>
    <message>
        <source>%1, the same feed as line %2</source>
        <translation>%1, derselbe Feed wie Zeile %2</translation>
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
        <translation><numerusform>%n Komponente betroffen</numerusform><numerusform>%n Komponenten betroffen</numerusform></translation>
    </message>
</context>
<context>
    <name>Sources</name>
    <message>
        <source>All Systems Operational</source>
        <translation>Alle Systeme in Betrieb</translation>
    </message>
    <message>
        <source>Active incident</source>
        <translation>Aktiver Vorfall</translation>
    </message>
    <message>
        <source>Unrecognized status format</source>
        <translation>Unbekanntes Statusformat</translation>
    </message>
    <message>
        <source>Bad server response (HTTP %1)</source>
        <translation>Fehlerhafte Serverantwort (HTTP %1)</translation>
    </message>
    <message>
        <source>Could not reach status page</source>
        <translation>Statusseite nicht erreichbar</translation>
    </message>
    <message>
        <source>Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary</source>
        <translation>Die Antwort war weder lanternic.v1 noch incident.io, Updog oder eine Statuspage-Zusammenfassung</translation>
    </message>
    <message>
        <source>No outages detected</source>
        <translation>Keine Ausfälle erkannt</translation>
    </message>
    <message>
        <source>Not monitored by Updog</source>
        <translation>Nicht von Updog überwacht</translation>
    </message>
    <message>
        <source>Outage detected — %1</source>
        <translation>Ausfall erkannt — %1</translation>
    </message>
    <message>
        <source>Outage detected</source>
        <translation>Ausfall erkannt</translation>
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
        <translation>Wartung</translation>
    </message>
    <message>
        <source>Treat maintenance as operational</source>
        <translation>Wartung als betriebsbereit werten</translation>
    </message>
    <message>
        <source>Components a status page lists as under maintenance count as operational: planned work turns nothing orange.</source>
        <translation>Komponenten, die eine Statusseite als in Wartung führt, gelten als betriebsbereit: Geplante Arbeiten färben nichts orange.</translation>
    </message>
</context>
<context>
    <name>lanternic::AppDelegate</name>
    <message>
        <source>Download</source>
        <translation>Herunterladen</translation>
    </message>
    <message>
        <source>Lanternic Settings</source>
        <translation>Lanternic-Einstellungen</translation>
    </message>
</context>
<context>
    <name>lanternic::CatalogPicker</name>
    <message>
        <source>Search %1 public status pages</source>
        <translation>%1 öffentliche Statusseiten durchsuchen</translation>
    </message>
    <message>
        <source>Search services</source>
        <translation>Dienste durchsuchen</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Dienste</translation>
    </message>
    <message>
        <source>↑ ↓ to choose, Enter to add, Esc to close</source>
        <translation>↑ ↓ zum Wählen, Eingabe zum Hinzufügen, Esc zum Schließen</translation>
    </message>
    <message>
        <source>  ✓ added</source>
        <translation>  ✓ hinzugefügt</translation>
    </message>
    <message>
        <source>%1, already among your sources</source>
        <translation>%1, bereits unter deinen Quellen</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Dienst hinzufügen</translation>
    </message>
</context>
<context>
    <name>lanternic::GeneralSettingsView</name>
    <message>
        <source>One per line, in "Label=host" form, e.g.
GitHub=www.githubstatus.com
Leave blank for the defaults (GitHub, Cloudflare, Datadog, OpenAI, Claude).</source>
        <translation>Eine pro Zeile, in der Form „Bezeichnung=Host“, z. B.
GitHub=www.githubstatus.com
Leer lassen für die Vorgaben (GitHub, Cloudflare, Datadog, OpenAI, Claude).</translation>
    </message>
    <message>
        <source>Status sources</source>
        <translation>Statusquellen</translation>
    </message>
    <message>
        <source>Add service…</source>
        <translation>Dienst hinzufügen…</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Dienst hinzufügen</translation>
    </message>
    <message>
        <source>Show operational systems</source>
        <translation>Betriebsbereite Systeme anzeigen</translation>
    </message>
    <message>
        <source>Notify me when a service changes</source>
        <translation>Benachrichtigen, wenn sich ein Dienst ändert</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Bei der Anmeldung starten</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Automatisch nach Updates suchen</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Jetzt prüfen</translation>
    </message>
    <message>
        <source>Updates come from your package manager</source>
        <translation>Updates kommen von deiner Paketverwaltung</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Aktualisierungsintervall</translation>
    </message>
    <message>
        <source>%1m</source>
        <translation>%1 Min.</translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation><numerusform>%n Minute</numerusform><numerusform>%n Minuten</numerusform></translation>
    </message>
    <message>
        <source>ignored — %1</source>
        <translation>ignoriert — %1</translation>
    </message>
    <message>
        <source>%1, as line %2</source>
        <translation>%1, wie Zeile %2</translation>
    </message>
</context>
<context>
    <name>lanternic::HistorySparkline</name>
    <message>
        <source>No history yet</source>
        <translation>Noch kein Verlauf</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>History: %1</source>
        <translation>Verlauf: %1</translation>
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
        <translation>STUMMGESCHALTET %1</translation>
    </message>
    <message>
        <source>SILENCED</source>
        <translation>STUMMGESCHALTET</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Quellen</translation>
    </message>
    <message>
        <source>Nothing to report — all operational</source>
        <translation>Nichts zu melden — alles in Betrieb</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen…</translation>
    </message>
    <message>
        <source>Quit Lanternic</source>
        <translation>Lanternic beenden</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Bildlauf</translation>
    </message>
    <message>
        <source>Resume notifications (paused until %1)</source>
        <translation>Benachrichtigungen fortsetzen (pausiert bis %1)</translation>
    </message>
    <message>
        <source>Pause notifications for 1 hour</source>
        <translation>Benachrichtigungen 1 Stunde pausieren</translation>
    </message>
    <message>
        <source>Offline · %1</source>
        <translation>Offline · %1</translation>
    </message>
</context>
<context>
    <name>lanternic::LanternicStore</name>
    <message>
        <source>Checking…</source>
        <translation>Wird geprüft…</translation>
    </message>
    <message>
        <source>Relay loop</source>
        <translation>Relay-Schleife</translation>
    </message>
    <message>
        <source>This relay feed already passed through this watcher</source>
        <translation>Dieser Relay-Feed ist bereits durch diesen Wächter gelaufen</translation>
    </message>
</context>
<context>
    <name>lanternic::NotificationSettingsView</name>
    <message>
        <source>Quiet hours</source>
        <translation>Ruhezeiten</translation>
    </message>
    <message>
        <source>Hold notifications back every night</source>
        <translation>Benachrichtigungen jede Nacht zurückhalten</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Von</translation>
    </message>
    <message>
        <source>until</source>
        <translation>bis</translation>
    </message>
    <message>
        <source>Quiet hours start</source>
        <translation>Beginn der Ruhezeit</translation>
    </message>
    <message>
        <source>Quiet hours end</source>
        <translation>Ende der Ruhezeit</translation>
    </message>
    <message>
        <source>Nothing pops up during these hours. When they end, one notification sums up what changed meanwhile and how things stand.</source>
        <translation>In dieser Zeit erscheint nichts. Danach fasst eine Benachrichtigung zusammen, was sich geändert hat und wie es jetzt steht.</translation>
    </message>
    <message>
        <source>These settings apply while “Notify me when a service changes” is on in General; that switch turns every notification on and off.</source>
        <translation>Diese Einstellungen gelten, solange „Benachrichtigen, wenn sich ein Dienst ändert“ unter Allgemein an ist; dieser Schalter schaltet alle Benachrichtigungen an und aus.</translation>
    </message>
</context>
<context>
    <name>lanternic::Notifier</name>
    <message>
        <source>Open status page</source>
        <translation>Statusseite öffnen</translation>
    </message>
    <message>
        <source>Silence for 1 hour</source>
        <translation>1 Stunde stummschalten</translation>
    </message>
    <message>
        <source>Open panel</source>
        <translation>Panel öffnen</translation>
    </message>
</context>
<context>
    <name>lanternic::RefreshButton</name>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
</context>
<context>
    <name>lanternic::SettingsView</name>
    <message>
        <source>General</source>
        <translation>Allgemein</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Benachrichtigungen</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Erweitert</translation>
    </message>
    <message>
        <source>About Lanternic</source>
        <translation>Über Lanternic</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Über</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Version %1</translation>
    </message>
    <message>
        <source>Watches the public status pages of the services you depend on.</source>
        <translation>Beobachtet die öffentlichen Statusseiten der Dienste, auf die du angewiesen bist.</translation>
    </message>
    <message>
        <source>The catalogue of status pages</source>
        <translation>Der Katalog der Statusseiten</translation>
    </message>
</context>
<context>
    <name>lanternic::SilencedRowView</name>
    <message>
        <source>Unmute</source>
        <translation>Ton an</translation>
    </message>
</context>
<context>
    <name>lanternic::Spinner</name>
    <message>
        <source>Refreshing</source>
        <translation>Wird aktualisiert</translation>
    </message>
</context>
<context>
    <name>lanternic::StatusRowView</name>
    <message>
        <source>Open status page</source>
        <translation>Statusseite öffnen</translation>
    </message>
    <message>
        <source>Silence or choose notifications</source>
        <translation>Stummschalten oder Benachrichtigungen wählen</translation>
    </message>
    <message>
        <source>All changes</source>
        <translation>Alle Änderungen</translation>
    </message>
    <message>
        <source>Outages only</source>
        <translation>Nur Ausfälle</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nie</translation>
    </message>
    <message>
        <source>Hide what is happening</source>
        <translation>Ausblenden, was passiert</translation>
    </message>
    <message>
        <source>Show what is happening</source>
        <translation>Zeigen, was passiert</translation>
    </message>
    <message>
        <source>Silence %1</source>
        <translation>%1 stummschalten</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>%1, checked %2</source>
        <translation>%1, geprüft %2</translation>
    </message>
    <message>
        <source>Uptime 24 h %1 · 7 d %2 · 30 d %3</source>
        <translation>Verfügbarkeit 24 Std. %1 · 7 T %2 · 30 T %3</translation>
    </message>
    <message>
        <source>%1 · %2 (%3)</source>
        <translation>%1 · %2 (%3)</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Verlauf</translation>
    </message>
    <message>
        <source>Maintenance</source>
        <translation>Wartung</translation>
    </message>
    <message numerus="yes">
        <source>%n open incident(s)</source>
        <translation><numerusform>%n offener Vorfall</numerusform><numerusform>%n offene Vorfälle</numerusform></translation>
    </message>
    <message>
        <source>Open incident</source>
        <translation>Vorfall öffnen</translation>
    </message>
    <message>
        <source>In progress · %1</source>
        <translation>Läuft · %1</translation>
    </message>
    <message>
        <source>Scheduled · %1</source>
        <translation>Geplant · %1</translation>
    </message>
    <message>
        <source>Open maintenance</source>
        <translation>Wartung öffnen</translation>
    </message>
    <message>
        <source>%1 · updated %2</source>
        <translation>%1 · aktualisiert %2</translation>
    </message>
    <message>
        <source>Notify me</source>
        <translation>Benachrichtigen</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>und %n weitere</numerusform><numerusform>und %n weitere</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::TimelineBar</name>
    <message numerus="yes">
        <source>Last 7 days: %1 operational, %n stretch(es) of trouble</source>
        <translation><numerusform>Letzte 7 Tage: %1 betriebsbereit, %n Störungsphase</numerusform><numerusform>Letzte 7 Tage: %1 betriebsbereit, %n Störungsphasen</numerusform></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>not watched</source>
        <translation>nicht beobachtet</translation>
    </message>
</context>
<context>
    <name>lanternic::UpdateChecker</name>
    <message>
        <source>Lanternic %1 is available.</source>
        <translation>Lanternic %1 ist verfügbar.</translation>
    </message>
    <message>
        <source>You have the newest version of Lanternic.</source>
        <translation>Du hast die neueste Version von Lanternic.</translation>
    </message>
    <message>
        <source>Could not check for updates: %1</source>
        <translation>Suche nach Updates fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>This build of Lanternic gets its updates from your package manager.</source>
        <translation>Diese Ausgabe von Lanternic erhält ihre Updates über deine Paketverwaltung.</translation>
    </message>
    <message>
        <source>the update feed answered with HTTP status %1</source>
        <translation>der Update-Feed antwortete mit HTTP-Status %1</translation>
    </message>
    <message>
        <source>the update feed lists no release</source>
        <translation>der Update-Feed nennt keine Version</translation>
    </message>
</context>
</TS>
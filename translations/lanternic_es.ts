<?xml version='1.0' encoding='utf-8'?>
<TS version="2.1" language="es_ES">
<context>
    <name>ChangeNotice</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1: new incident — %2</source>
        <translation>%1: nuevo incidente — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>y %n más</numerusform><numerusform>y %n más</numerusform></translation>
    </message>
    <message>
        <source>%1 recovered</source>
        <translation>%1 se ha recuperado</translation>
    </message>
    <message>
        <source>%1 is %2</source>
        <translation>%1 está %2</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message>
        <source>%1 went %2 and recovered</source>
        <translation>%1 estuvo %2 y se ha recuperado</translation>
    </message>
    <message>
        <source>%1 went %2 and is %3 now</source>
        <translation>%1 estuvo %2 y ahora está %3</translation>
    </message>
    <message>
        <source>While quiet</source>
        <translation>Durante el silencio</translation>
    </message>
    <message>
        <source>; </source>
        <translation>; </translation>
    </message>
    <message>
        <source>%1 is under maintenance</source>
        <translation>%1 está en mantenimiento</translation>
    </message>
    <message>
        <source>%1 — under maintenance</source>
        <translation>%1 — en mantenimiento</translation>
    </message>
</context>
<context>
    <name>DisplaySummary</name>
    <message>
        <source>No sources configured</source>
        <translation>No hay fuentes configuradas</translation>
    </message>
    <message numerus="yes">
        <source>%n down</source>
        <translation><numerusform>%n caído</numerusform><numerusform>%n caídos</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n degraded</source>
        <translation><numerusform>%n degradado</numerusform><numerusform>%n degradados</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n unknown</source>
        <translation><numerusform>%n desconocido</numerusform><numerusform>%n desconocidos</numerusform></translation>
    </message>
    <message>
        <source>All systems operational</source>
        <translation>Todos los sistemas operativos</translation>
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
        <translation>En mantenimiento</translation>
    </message>
    <message>
        <source>Under maintenance until %1</source>
        <translation>En mantenimiento hasta %1</translation>
    </message>
</context>
<context>
    <name>DisplayText</name>
    <message>
        <source>Never updated</source>
        <translation>Nunca actualizado</translation>
    </message>
    <message>
        <source>Updated just now</source>
        <translation>Actualizado ahora mismo</translation>
    </message>
    <message numerus="yes">
        <source>Updated %ns ago</source>
        <translation><numerusform>Actualizado hace %n s</numerusform><numerusform>Actualizado hace %n s</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nm ago</source>
        <translation><numerusform>Actualizado hace %n min</numerusform><numerusform>Actualizado hace %n min</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nd ago</source>
        <translation><numerusform>Actualizado hace %n día</numerusform><numerusform>Actualizado hace %n días</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>Updated %nh ago</source>
        <translation><numerusform>Actualizado hace %n h</numerusform><numerusform>Actualizado hace %n h</numerusform></translation>
    </message>
    <message>
        <source>until resolved</source>
        <translation>hasta que se resuelva</translation>
    </message>
    <message>
        <source>forever</source>
        <translation>para siempre</translation>
    </message>
    <message>
        <source>%1d %2h left</source>
        <translation>quedan %1 d %2 h</translation>
    </message>
    <message>
        <source>%1h %2m left</source>
        <translation>quedan %1 h %2 min</translation>
    </message>
    <message>
        <source>%1m left</source>
        <translation>quedan %1 min</translation>
    </message>
    <message>
        <source>just now</source>
        <translation>ahora mismo</translation>
    </message>
    <message numerus="yes">
        <source>%n min ago</source>
        <translation><numerusform>hace %n min</numerusform><numerusform>hace %n min</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n h ago</source>
        <translation><numerusform>hace %n h</numerusform><numerusform>hace %n h</numerusform></translation>
    </message>
    <message numerus="yes">
        <source>%n d ago</source>
        <translation><numerusform>hace %n día</numerusform><numerusform>hace %n días</numerusform></translation>
    </message>
    <message>
        <source>operational</source>
        <translation>operativo</translation>
    </message>
    <message>
        <source>degraded performance</source>
        <translation>rendimiento degradado</translation>
    </message>
    <message>
        <source>partial outage</source>
        <translation>interrupción parcial</translation>
    </message>
    <message>
        <source>major outage</source>
        <translation>interrupción grave</translation>
    </message>
    <message>
        <source>under maintenance</source>
        <translation>en mantenimiento</translation>
    </message>
    <message>
        <source>Identified</source>
        <translation>Identificado</translation>
    </message>
    <message>
        <source>Monitoring</source>
        <translation>En observación</translation>
    </message>
    <message>
        <source>Resolved</source>
        <translation>Resuelto</translation>
    </message>
    <message>
        <source>Investigating</source>
        <translation>Investigando</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 (updated %2)</source>
        <translation>%1 (actualizado %2)</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Hoy</translation>
    </message>
    <message>
        <source>Tomorrow</source>
        <translation>Mañana</translation>
    </message>
    <message>
        <source>Yesterday</source>
        <translation>Ayer</translation>
    </message>
    <message>
        <source>until %1 %2</source>
        <translation>hasta %1 %2</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>desde %1</translation>
    </message>
    <message>
        <source>Maintenance: %1</source>
        <translation>Mantenimiento: %1</translation>
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
        <translation>Operativo</translation>
    </message>
    <message>
        <source>Degraded</source>
        <translation>Degradado</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Caído</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>operational</source>
        <translation>operativo</translation>
    </message>
    <message>
        <source>degraded</source>
        <translation>degradado</translation>
    </message>
    <message>
        <source>down</source>
        <translation>caído</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>desconocido</translation>
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
        <translation>%1 d %2 h</translation>
    </message>
    <message>
        <source>%1 – ongoing</source>
        <translation>%1 – en curso</translation>
    </message>
</context>
<context>
    <name>LoginItem</name>
    <message>
        <source>Launch at login is not supported on this system yet.</source>
        <translation>El inicio al iniciar sesión aún no es compatible con este sistema.</translation>
    </message>
    <message>
        <source>Could not create the folder %1.</source>
        <translation>No se pudo crear la carpeta %1.</translation>
    </message>
    <message>
        <source>Could not write %1: %2</source>
        <translation>No se pudo escribir %1: %2</translation>
    </message>
    <message>
        <source>Could not remove %1: %2</source>
        <translation>No se pudo eliminar %1: %2</translation>
    </message>
</context>
<context>
    <name>Network</name>
    <message>
        <source>Link-local address refused</source>
        <translation>Dirección de enlace local rechazada</translation>
    </message>
    <message>
        <source>Redirect from a public to a private address refused</source>
        <translation>Redirección de una dirección pública a una privada rechazada</translation>
    </message>
    <message>
        <source>Redirect to another kind of address refused</source>
        <translation>Redirección a otro tipo de dirección rechazada</translation>
    </message>
    <message>
        <source>Redirect from https to http refused</source>
        <translation>Redirección de https a http rechazada</translation>
    </message>
    <message>
        <source>Too many redirects</source>
        <translation>Demasiadas redirecciones</translation>
    </message>
    <message>
        <source>The response is larger than 16 MiB</source>
        <translation>La respuesta supera los 16 MiB</translation>
    </message>
    <message>
        <source>No answer within %1 s</source>
        <translation>Sin respuesta en %1 s</translation>
    </message>
    <message>
        <source>No connection within %1 s</source>
        <translation>Sin conexión en %1 s</translation>
    </message>
    <message>
        <source>The request timed out</source>
        <translation>La solicitud ha caducado</translation>
    </message>
</context>
<context>
    <name>PaneText</name>
    <message numerus="yes">
        <source>… (and %n other(s))</source>
        <translation><numerusform>… (y %n más)</numerusform><numerusform>… (y %n más)</numerusform></translation>
    </message>
    <message>
        <source>Silence %1 - %2 [%3]</source>
        <translation>Silenciar %1 - %2 [%3]</translation>
    </message>
    <message>
        <source>Silence %1 (ALL)</source>
        <translation>Silenciar %1 (TODO)</translation>
    </message>
</context>
<context>
    <name>SilenceStore</name>
    <message>
        <source>For 2 hours</source>
        <translation>Durante 2 horas</translation>
    </message>
    <message>
        <source>For 1 day</source>
        <translation>Durante 1 día</translation>
    </message>
    <message>
        <source>For 2 days</source>
        <translation>Durante 2 días</translation>
    </message>
    <message>
        <source>For 1 week</source>
        <translation>Durante 1 semana</translation>
    </message>
    <message>
        <source>Until resolved</source>
        <translation>Hasta que se resuelva</translation>
    </message>
    <message>
        <source>Forever</source>
        <translation>Para siempre</translation>
    </message>
</context>
<context>
    <name>SourceRegistry</name>
    <message>
        <source>no “=”</source>
        <translation>falta «=»</translation>
    </message>
    <message>
        <source>no label</source>
        <translation>falta la etiqueta</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>falta la dirección</translation>
    </message>
    <message>
        <source>%1:// is not supported</source>
        <translation>%1:// no es compatible</translation>
    </message>
    <message>
        <source>no host</source>
        <translation>falta el host</translation>
    </message>
    <message>
        <source>feed</source>
        <translation>fuente</translation>
    </message>
    <message>
        <source>to be probed</source>
        <translation>por sondear</translation>
    </message>
    <message>
        <source>line %1: ignored — %2</source>
        <translation>línea %1: ignorada — %2</translation>
    </message>
    <message>
        <source>line %1: %2 → %3 (%4)</source>
        <translation>línea %1: %2 → %3 (%4)</translation>
    </message>
    <message>
        <source>%1, the same feed as line %2</source>
        <translation>%1, la misma fuente que la línea %2</translation>
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
        <translation><numerusform>%n componente afectado</numerusform><numerusform>%n componentes afectados</numerusform></translation>
    </message>
</context>
<context>
    <name>Sources</name>
    <message>
        <source>All Systems Operational</source>
        <translation>Todos los sistemas operativos</translation>
    </message>
    <message>
        <source>Active incident</source>
        <translation>Incidente activo</translation>
    </message>
    <message>
        <source>Unrecognized status format</source>
        <translation>Formato de estado no reconocido</translation>
    </message>
    <message>
        <source>Bad server response (HTTP %1)</source>
        <translation>Respuesta incorrecta del servidor (HTTP %1)</translation>
    </message>
    <message>
        <source>Could not reach status page</source>
        <translation>No se pudo acceder a la página de estado</translation>
    </message>
    <message>
        <source>Response was not lanternic.v1, incident.io, Updog, nor a Statuspage summary</source>
        <translation>La respuesta no era lanternic.v1, incident.io, Updog ni un resumen de Statuspage</translation>
    </message>
    <message>
        <source>No outages detected</source>
        <translation>No se detectaron caídas</translation>
    </message>
    <message>
        <source>Not monitored by Updog</source>
        <translation>No supervisado por Updog</translation>
    </message>
    <message>
        <source>Outage detected — %1</source>
        <translation>Caída detectada — %1</translation>
    </message>
    <message>
        <source>Outage detected</source>
        <translation>Caída detectada</translation>
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
        <translation>Mantenimiento</translation>
    </message>
    <message>
        <source>Treat maintenance as operational</source>
        <translation>Tratar el mantenimiento como operativo</translation>
    </message>
    <message>
        <source>Components a status page lists as under maintenance count as operational: planned work turns nothing orange.</source>
        <translation>Los componentes que una página de estado muestra en mantenimiento cuentan como operativos: el trabajo planificado no pone nada en naranja.</translation>
    </message>
</context>
<context>
    <name>lanternic::AppDelegate</name>
    <message>
        <source>Download</source>
        <translation>Descargar</translation>
    </message>
    <message>
        <source>Lanternic Settings</source>
        <translation>Ajustes de Lanternic</translation>
    </message>
</context>
<context>
    <name>lanternic::CatalogPicker</name>
    <message>
        <source>Search %1 public status pages</source>
        <translation>Buscar en %1 páginas de estado públicas</translation>
    </message>
    <message>
        <source>Search services</source>
        <translation>Buscar servicios</translation>
    </message>
    <message>
        <source>Services</source>
        <translation>Servicios</translation>
    </message>
    <message>
        <source>↑ ↓ to choose, Enter to add, Esc to close</source>
        <translation>↑ ↓ para elegir, Intro para añadir, Esc para cerrar</translation>
    </message>
    <message>
        <source>  ✓ added</source>
        <translation>  ✓ añadido</translation>
    </message>
    <message>
        <source>%1, already among your sources</source>
        <translation>%1, ya está entre tus fuentes</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Añadir servicio</translation>
    </message>
</context>
<context>
    <name>lanternic::GeneralSettingsView</name>
    <message>
        <source>One per line, in "Label=host" form, e.g.
GitHub=www.githubstatus.com
Leave blank for the defaults (GitHub, Cloudflare, Datadog, OpenAI, Claude).</source>
        <translation>Una por línea, con la forma «Etiqueta=host», p. ej.
GitHub=www.githubstatus.com
Déjalo en blanco para las predeterminadas (GitHub, Cloudflare, Datadog, OpenAI, Claude).</translation>
    </message>
    <message>
        <source>Status sources</source>
        <translation>Fuentes de estado</translation>
    </message>
    <message>
        <source>Add service…</source>
        <translation>Añadir servicio…</translation>
    </message>
    <message>
        <source>Add service</source>
        <translation>Añadir servicio</translation>
    </message>
    <message>
        <source>Show operational systems</source>
        <translation>Mostrar los sistemas operativos</translation>
    </message>
    <message>
        <source>Notify me when a service changes</source>
        <translation>Avisarme cuando cambie un servicio</translation>
    </message>
    <message>
        <source>Launch at login</source>
        <translation>Abrir al iniciar sesión</translation>
    </message>
    <message>
        <source>Check for updates automatically</source>
        <translation>Buscar actualizaciones automáticamente</translation>
    </message>
    <message>
        <source>Check now</source>
        <translation>Comprobar ahora</translation>
    </message>
    <message>
        <source>Updates come from your package manager</source>
        <translation>Las actualizaciones llegan desde tu gestor de paquetes</translation>
    </message>
    <message>
        <source>Refresh interval</source>
        <translation>Intervalo de actualización</translation>
    </message>
    <message>
        <source>%1m</source>
        <translation>%1 min</translation>
    </message>
    <message numerus="yes">
        <source>%n minute(s)</source>
        <translation><numerusform>%n minuto</numerusform><numerusform>%n minutos</numerusform></translation>
    </message>
    <message>
        <source>ignored — %1</source>
        <translation>ignorada — %1</translation>
    </message>
    <message>
        <source>%1, as line %2</source>
        <translation>%1, como la línea %2</translation>
    </message>
</context>
<context>
    <name>lanternic::HistorySparkline</name>
    <message>
        <source>No history yet</source>
        <translation>Aún no hay historial</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1 %2</translation>
    </message>
    <message>
        <source>History: %1</source>
        <translation>Historial: %1</translation>
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
        <translation>SILENCIADOS %1</translation>
    </message>
    <message>
        <source>SILENCED</source>
        <translation>SILENCIADOS</translation>
    </message>
    <message>
        <source>Sources</source>
        <translation>Fuentes</translation>
    </message>
    <message>
        <source>Nothing to report — all operational</source>
        <translation>Nada que informar — todo operativo</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Ajustes…</translation>
    </message>
    <message>
        <source>Quit Lanternic</source>
        <translation>Salir de Lanternic</translation>
    </message>
    <message>
        <source>Scroll</source>
        <translation>Desplazamiento</translation>
    </message>
    <message>
        <source>Resume notifications (paused until %1)</source>
        <translation>Reanudar las notificaciones (en pausa hasta las %1)</translation>
    </message>
    <message>
        <source>Pause notifications for 1 hour</source>
        <translation>Pausar las notificaciones durante 1 hora</translation>
    </message>
    <message>
        <source>Offline · %1</source>
        <translation>Sin conexión · %1</translation>
    </message>
</context>
<context>
    <name>lanternic::LanternicStore</name>
    <message>
        <source>Checking…</source>
        <translation>Comprobando…</translation>
    </message>
    <message>
        <source>Relay loop</source>
        <translation>Bucle de relé</translation>
    </message>
    <message>
        <source>This relay feed already passed through this watcher</source>
        <translation>Este feed de relé ya pasó por este vigilante</translation>
    </message>
</context>
<context>
    <name>lanternic::NotificationSettingsView</name>
    <message>
        <source>Quiet hours</source>
        <translation>Horas de silencio</translation>
    </message>
    <message>
        <source>Hold notifications back every night</source>
        <translation>Retener las notificaciones cada noche</translation>
    </message>
    <message>
        <source>From</source>
        <translation>Desde</translation>
    </message>
    <message>
        <source>until</source>
        <translation>hasta</translation>
    </message>
    <message>
        <source>Quiet hours start</source>
        <translation>Inicio de las horas de silencio</translation>
    </message>
    <message>
        <source>Quiet hours end</source>
        <translation>Fin de las horas de silencio</translation>
    </message>
    <message>
        <source>Nothing pops up during these hours. When they end, one notification sums up what changed meanwhile and how things stand.</source>
        <translation>Durante estas horas no aparece nada. Al terminar, una notificación resume lo que cambió mientras tanto y cómo está todo.</translation>
    </message>
    <message>
        <source>These settings apply while “Notify me when a service changes” is on in General; that switch turns every notification on and off.</source>
        <translation>Estos ajustes se aplican mientras «Avisarme cuando cambie un servicio» esté activado en General; ese interruptor activa y desactiva todas las notificaciones.</translation>
    </message>
</context>
<context>
    <name>lanternic::Notifier</name>
    <message>
        <source>Open status page</source>
        <translation>Abrir la página de estado</translation>
    </message>
    <message>
        <source>Silence for 1 hour</source>
        <translation>Silenciar durante 1 hora</translation>
    </message>
    <message>
        <source>Open panel</source>
        <translation>Abrir el panel</translation>
    </message>
</context>
<context>
    <name>lanternic::RefreshButton</name>
    <message>
        <source>Refresh</source>
        <translation>Actualizar</translation>
    </message>
</context>
<context>
    <name>lanternic::SettingsView</name>
    <message>
        <source>General</source>
        <translation>General</translation>
    </message>
    <message>
        <source>Notifications</source>
        <translation>Notificaciones</translation>
    </message>
    <message>
        <source>Advanced</source>
        <translation>Avanzado</translation>
    </message>
    <message>
        <source>About Lanternic</source>
        <translation>Acerca de Lanternic</translation>
    </message>
    <message>
        <source>About</source>
        <translation>Acerca de</translation>
    </message>
    <message>
        <source>Version %1</source>
        <translation>Versión %1</translation>
    </message>
    <message>
        <source>Watches the public status pages of the services you depend on.</source>
        <translation>Vigila las páginas de estado públicas de los servicios de los que depende.</translation>
    </message>
    <message>
        <source>The catalogue of status pages</source>
        <translation>El catálogo de páginas de estado</translation>
    </message>
</context>
<context>
    <name>lanternic::SilencedRowView</name>
    <message>
        <source>Unmute</source>
        <translation>Reactivar</translation>
    </message>
</context>
<context>
    <name>lanternic::Spinner</name>
    <message>
        <source>Refreshing</source>
        <translation>Actualizando</translation>
    </message>
</context>
<context>
    <name>lanternic::StatusRowView</name>
    <message>
        <source>Open status page</source>
        <translation>Abrir la página de estado</translation>
    </message>
    <message>
        <source>Silence or choose notifications</source>
        <translation>Silenciar o elegir notificaciones</translation>
    </message>
    <message>
        <source>All changes</source>
        <translation>Todos los cambios</translation>
    </message>
    <message>
        <source>Outages only</source>
        <translation>Solo caídas</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nunca</translation>
    </message>
    <message>
        <source>Hide what is happening</source>
        <translation>Ocultar lo que está pasando</translation>
    </message>
    <message>
        <source>Show what is happening</source>
        <translation>Mostrar lo que está pasando</translation>
    </message>
    <message>
        <source>Silence %1</source>
        <translation>Silenciar %1</translation>
    </message>
    <message>
        <source>%1, %2, %3</source>
        <translation>%1, %2, %3</translation>
    </message>
    <message>
        <source>%1, checked %2</source>
        <translation>%1, comprobado %2</translation>
    </message>
    <message>
        <source>Uptime 24 h %1 · 7 d %2 · 30 d %3</source>
        <translation>Disponibilidad 24 h %1 · 7 d %2 · 30 d %3</translation>
    </message>
    <message>
        <source>%1 · %2 (%3)</source>
        <translation>%1 · %2 (%3)</translation>
    </message>
    <message>
        <source>History</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Maintenance</source>
        <translation>Mantenimiento</translation>
    </message>
    <message numerus="yes">
        <source>%n open incident(s)</source>
        <translation><numerusform>%n incidente abierto</numerusform><numerusform>%n incidentes abiertos</numerusform></translation>
    </message>
    <message>
        <source>Open incident</source>
        <translation>Abrir el incidente</translation>
    </message>
    <message>
        <source>In progress · %1</source>
        <translation>En curso · %1</translation>
    </message>
    <message>
        <source>Scheduled · %1</source>
        <translation>Programado · %1</translation>
    </message>
    <message>
        <source>Open maintenance</source>
        <translation>Abrir el mantenimiento</translation>
    </message>
    <message>
        <source>%1 · updated %2</source>
        <translation>%1 · actualizado %2</translation>
    </message>
    <message>
        <source>Notify me</source>
        <translation>Avisarme</translation>
    </message>
    <message>
        <source>%1 — %2</source>
        <translation>%1 — %2</translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation><numerusform>y %n más</numerusform><numerusform>y %n más</numerusform></translation>
    </message>
</context>
<context>
    <name>lanternic::TimelineBar</name>
    <message numerus="yes">
        <source>Last 7 days: %1 operational, %n stretch(es) of trouble</source>
        <translation><numerusform>Últimos 7 días: %1 operativo, %n periodo con problemas</numerusform><numerusform>Últimos 7 días: %1 operativo, %n periodos con problemas</numerusform></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>not watched</source>
        <translation>sin vigilar</translation>
    </message>
</context>
<context>
    <name>lanternic::UpdateChecker</name>
    <message>
        <source>Lanternic %1 is available.</source>
        <translation>Lanternic %1 está disponible.</translation>
    </message>
    <message>
        <source>You have the newest version of Lanternic.</source>
        <translation>Tienes la versión más reciente de Lanternic.</translation>
    </message>
    <message>
        <source>Could not check for updates: %1</source>
        <translation>No se pudieron buscar actualizaciones: %1</translation>
    </message>
    <message>
        <source>This build of Lanternic gets its updates from your package manager.</source>
        <translation>Esta compilación de Lanternic recibe sus actualizaciones de tu gestor de paquetes.</translation>
    </message>
    <message>
        <source>the update feed answered with HTTP status %1</source>
        <translation>la fuente de actualizaciones respondió con el estado HTTP %1</translation>
    </message>
    <message>
        <source>the update feed lists no release</source>
        <translation>la fuente de actualizaciones no incluye ninguna versión</translation>
    </message>
</context>
</TS>
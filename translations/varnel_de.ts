<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en_US">
<context>
    <name>AppDelegate</name>
    <message>
        <source>SEMS account is required.</source>
        <translation>Ein SEMS-Konto ist erforderlich.</translation>
    </message>
    <message>
        <source>Invalid SEMS base URL.</source>
        <translation>Ungültige SEMS-Basis-URL.</translation>
    </message>
    <message>
        <source>Not connected. Open Settings to connect.</source>
        <translation>Nicht verbunden. Öffnen Sie die Einstellungen, um zu verbinden.</translation>
    </message>
    <message>
        <source>Set your SEMS account to connect.</source>
        <translation>Geben Sie Ihr SEMS-Konto an, um zu verbinden.</translation>
    </message>
    <message>
        <source>Password is required for sign in.</source>
        <translation>Zur Anmeldung ist das Passwort erforderlich.</translation>
    </message>
    <message>
        <source>API client is not initialized.</source>
        <translation>Der API-Client ist nicht bereit.</translation>
    </message>
    <message>
        <source>SEMS account is empty.</source>
        <translation>Das SEMS-Konto ist leer.</translation>
    </message>
</context>
<context>
    <name>AppErrorMapper</name>
    <message>
        <source>Offline. Check your internet connection and try Refresh.</source>
        <translation>Offline. Prüfen Sie die Internetverbindung und versuchen Sie es mit „Aktualisieren“.</translation>
    </message>
    <message>
        <source>SEMS endpoint is unreachable. Check Base URL in Profile.</source>
        <translation>Der SEMS-Server ist nicht erreichbar. Prüfen Sie die Basis-URL im Konto.</translation>
    </message>
    <message>
        <source>SEMS request timed out. Try Refresh in a moment.</source>
        <translation>SEMS hat nicht rechtzeitig geantwortet. Versuchen Sie es gleich mit „Aktualisieren“.</translation>
    </message>
    <message>
        <source>Sign-in rejected. Check account credentials and endpoint.</source>
        <translation>Anmeldung abgelehnt. Prüfen Sie die Zugangsdaten und den Server.</translation>
    </message>
    <message>
        <source>Session rejected by SEMS. Open Settings and reconnect.</source>
        <translation>SEMS hat die Sitzung abgelehnt. Öffnen Sie die Einstellungen und verbinden Sie erneut.</translation>
    </message>
    <message>
        <source>Sign-in failed. Check email/password in Profile and reconnect.</source>
        <translation>Anmeldung fehlgeschlagen. Prüfen Sie E-Mail-Adresse und Passwort im Konto und verbinden Sie erneut.</translation>
    </message>
    <message>
        <source>Session expired or credentials changed. Open Settings and reconnect.</source>
        <translation>Die Sitzung ist abgelaufen oder die Zugangsdaten haben sich geändert. Öffnen Sie die Einstellungen und verbinden Sie erneut.</translation>
    </message>
    <message>
        <source>SEMS rate limit reached. Please wait a moment and retry.</source>
        <translation>Zu viele Anfragen an SEMS. Bitte warten Sie einen Moment.</translation>
    </message>
    <message>
        <source>SEMS service is temporarily unavailable. Try again shortly.</source>
        <translation>SEMS ist vorübergehend nicht verfügbar. Versuchen Sie es in Kürze erneut.</translation>
    </message>
    <message>
        <source>SEMS request failed (HTTP %1).</source>
        <translation>Die SEMS-Anfrage ist fehlgeschlagen (HTTP %1).</translation>
    </message>
    <message>
        <source>No power station found. Verify account access or set Station ID in Profile.</source>
        <translation>Keine Anlage gefunden. Prüfen Sie den Zugang des Kontos oder geben Sie die Anlagen-ID im Konto an.</translation>
    </message>
    <message>
        <source>Sign in failed: %1</source>
        <translation>Anmeldung fehlgeschlagen: %1</translation>
    </message>
    <message>
        <source>Polling failed: %1</source>
        <translation>Abfrage fehlgeschlagen: %1</translation>
    </message>
</context>
<context>
    <name>AppSettings</name>
    <message>
        <source>Adaptive</source>
        <translation>Angepasst</translation>
    </message>
    <message>
        <source>Fixed</source>
        <translation>Fest</translation>
    </message>
    <message>
        <source>Automatic</source>
        <translation>Automatisch</translation>
    </message>
    <message>
        <source>Light</source>
        <translation>Hell</translation>
    </message>
    <message>
        <source>Dark</source>
        <translation>Dunkel</translation>
    </message>
</context>
<context>
    <name>ApplicationDialogs</name>
    <message>
        <source>About Varnel</source>
        <translation>Über Varnel</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Varnel&lt;/h2&gt;&lt;p&gt;Version %1&lt;/p&gt;&lt;p&gt;Watches your home solar installation&lt;br&gt;from the status area.&lt;/p&gt;</source>
        <translation>&lt;h2&gt;Varnel&lt;/h2&gt;&lt;p&gt;Version %1&lt;/p&gt;&lt;p&gt;Behält Ihre Solaranlage&lt;br&gt;im Infobereich im Blick.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Check for Updates</source>
        <translation>Nach Aktualisierungen suchen</translation>
    </message>
    <message>
        <source>Automatic updates are not configured for this build yet.</source>
        <translation>Für diese Fassung sind noch keine automatischen Aktualisierungen eingerichtet.</translation>
    </message>
    <message>
        <source>Development Build</source>
        <translation>Entwicklungsfassung</translation>
    </message>
</context>
<context>
    <name>ApplicationMenu</name>
    <message>
        <source>About Varnel</source>
        <translation>Über Varnel</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Check for Updates...</source>
        <translation>Nach Aktualisierungen suchen ...</translation>
    </message>
    <message>
        <source>Hide Varnel</source>
        <translation>Varnel ausblenden</translation>
    </message>
    <message>
        <source>Hide Others</source>
        <translation>Andere ausblenden</translation>
    </message>
    <message>
        <source>Show all</source>
        <translation>Alle einblenden</translation>
    </message>
    <message>
        <source>Quit Varnel</source>
        <translation>Varnel beenden</translation>
    </message>
    <message>
        <source>&amp;Varnel</source>
        <translation>&amp;Varnel</translation>
    </message>
</context>
<context>
    <name>ConnectionState</name>
    <message>
        <source>Connection error</source>
        <translation>Verbindungsfehler</translation>
    </message>
    <message>
        <source>Connection error: %1</source>
        <translation>Verbindungsfehler: %1</translation>
    </message>
    <message>
        <source>Not connected</source>
        <translation>Nicht verbunden</translation>
    </message>
    <message>
        <source>Connecting…</source>
        <translation>Verbindung wird aufgebaut …</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Verbunden</translation>
    </message>
</context>
<context>
    <name>FileError</name>
    <message>
        <source>The file %1 cannot be replaced.</source>
        <translation>Die Datei %1 kann nicht ersetzt werden.</translation>
    </message>
    <message>
        <source>It is no regular file of at most %1 bytes.</source>
        <translation>Es ist keine gewöhnliche Datei mit höchstens %1 Bytes.</translation>
    </message>
</context>
<context>
    <name>KeychainError</name>
    <message>
        <source>Keychain operation failed with status %1.</source>
        <translation>Der Schlüsselbund meldet den Fehler %1.</translation>
    </message>
    <message>
        <source>Failed to encode value for Keychain.</source>
        <translation>Der Wert kann für den Schlüsselbund nicht kodiert werden.</translation>
    </message>
    <message>
        <source>Failed to decode value from Keychain.</source>
        <translation>Der Wert aus dem Schlüsselbund kann nicht gelesen werden.</translation>
    </message>
</context>
<context>
    <name>LaunchAtLoginManager</name>
    <message>
        <source>Launch at login update failed: %1</source>
        <translation>Der Start bei der Anmeldung konnte nicht geändert werden: %1</translation>
    </message>
    <message>
        <source>Launch at login requires macOS 13 or newer.</source>
        <translation>Der Start bei der Anmeldung benötigt macOS 13 oder neuer.</translation>
    </message>
    <message>
        <source>Launch at login requires running as a bundled app.</source>
        <translation>Für den Start bei der Anmeldung muss das Programm installiert sein.</translation>
    </message>
</context>
<context>
    <name>Notifications</name>
    <message>
        <source>Production Started</source>
        <translation>Erzeugung begonnen</translation>
    </message>
    <message>
        <source>Current output is %1.</source>
        <translation>Die aktuelle Leistung beträgt %1.</translation>
    </message>
    <message>
        <source>Production Ended</source>
        <translation>Erzeugung beendet</translation>
    </message>
    <message>
        <source>Current output stayed below 0 W for 2 consecutive checks.</source>
        <translation>Die aktuelle Leistung lag bei 2 Abfragen in Folge unter 0 W.</translation>
    </message>
    <message>
        <source>Production Above 1.00 kW</source>
        <translation>Erzeugung über 1,00 kW</translation>
    </message>
    <message>
        <source>Current output reached %1.</source>
        <translation>Die aktuelle Leistung hat %1 erreicht.</translation>
    </message>
</context>
<context>
    <name>OutputWindow</name>
    <message>
        <source>Show Chart in a Window</source>
        <translation>Diagramm in einem Fenster zeigen</translation>
    </message>
    <message>
        <source>Output of the day</source>
        <translation>Leistung des Tages</translation>
    </message>
    <message>
        <source>%1 (from the service)</source>
        <translation>%1 (vom Dienst)</translation>
    </message>
    <message>
        <source>Previous Day</source>
        <translation>Vorheriger Tag</translation>
    </message>
    <message>
        <source>Next Day</source>
        <translation>Nächster Tag</translation>
    </message>
    <message>
        <source>Today</source>
        <translation>Heute</translation>
    </message>
    <message>
        <source>Dotted: from the service</source>
        <translation>Gepunktet: vom Dienst</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Save as CSV…</source>
        <translation>Als CSV speichern …</translation>
    </message>
    <message>
        <source>Save as CSV</source>
        <translation>Als CSV speichern</translation>
    </message>
    <message>
        <source>The file could not be saved: %1</source>
        <translation>Die Datei konnte nicht gespeichert werden: %1</translation>
    </message>
    <message>
        <source>Today, %1</source>
        <translation>Heute, %1</translation>
    </message>
    <message>
        <source>Peak: none yet</source>
        <translation>Spitze: noch keine</translation>
    </message>
    <message>
        <source>Peak: %1 at %2</source>
        <translation>Spitze: %1 um %2</translation>
    </message>
    <message>
        <source>Energy: %1</source>
        <translation>Energie: %1</translation>
    </message>
    <message>
        <source>Energy under the curve: %1</source>
        <translation>Energie unter der Kurve: %1</translation>
    </message>
    <message>
        <source>Readings: %1</source>
        <translation>Messwerte: %1</translation>
    </message>
    <message>
        <source>Gaps: %1</source>
        <translation>Lücken: %1</translation>
    </message>
</context>
<context>
    <name>SEMSAPIError</name>
    <message>
        <source>SEMS API returned HTTP %1.</source>
        <translation>Die SEMS-Schnittstelle antwortet mit HTTP %1.</translation>
    </message>
    <message>
        <source>SEMS API returned HTTP %1: %2</source>
        <translation>Die SEMS-Schnittstelle antwortet mit HTTP %1: %2</translation>
    </message>
    <message>
        <source>Sign in failed. %1</source>
        <translation>Anmeldung fehlgeschlagen. %1</translation>
    </message>
    <message>
        <source>Unexpected response from SEMS API.</source>
        <translation>Unerwartete Antwort der SEMS-Schnittstelle.</translation>
    </message>
    <message>
        <source>Authentication failed. Check account/password and endpoint region.</source>
        <translation>Anmeldung abgelehnt. Prüfen Sie Konto, Passwort und die Region des Servers.</translation>
    </message>
    <message>
        <source>No power station found for this account.</source>
        <translation>Zu diesem Konto wurde keine Anlage gefunden.</translation>
    </message>
    <message>
        <source>Could not find instantaneous power in SEMS response.</source>
        <translation>Die Antwort von SEMS enthält keine aktuelle Leistung.</translation>
    </message>
    <message>
        <source>SEMS API request failed.</source>
        <translation>Die SEMS-Anfrage ist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>SEMS API error.</source>
        <translation>Fehler der SEMS-Schnittstelle.</translation>
    </message>
    <message>
        <source>Invalid SEMS URL path %1.</source>
        <translation>Ungültiger SEMS-Pfad %1.</translation>
    </message>
</context>
<context>
    <name>StatusMenu</name>
    <message>
        <source>%1 at %2</source>
        <translation>%1 um %2</translation>
    </message>
    <message>
        <source>No data yet</source>
        <translation>Noch keine Daten</translation>
    </message>
    <message>
        <source>1 sample</source>
        <translation>1 Messwert</translation>
    </message>
    <message>
        <source>%1 samples</source>
        <translation>%1 Messwerte</translation>
    </message>
    <message>
        <source>Latest %1, peak %2, %3</source>
        <translation>Zuletzt %1, Spitze %2, %3</translation>
    </message>
    <message>
        <source>Today&apos;s output</source>
        <translation>Leistung heute</translation>
    </message>
    <message>
        <source>Error: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>Current Output</source>
        <translation>Aktuelle Leistung</translation>
    </message>
    <message>
        <source>Daily Output</source>
        <translation>Tagesertrag</translation>
    </message>
    <message>
        <source>Last Updated</source>
        <translation>Zuletzt aktualisiert</translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation>Aktualisieren</translation>
    </message>
    <message>
        <source>Settings…</source>
        <translation>Einstellungen …</translation>
    </message>
    <message>
        <source>Connect…</source>
        <translation>Verbinden …</translation>
    </message>
    <message>
        <source>Disconnect</source>
        <translation>Trennen</translation>
    </message>
    <message>
        <source>Show Chart</source>
        <translation>Diagramm zeigen</translation>
    </message>
    <message>
        <source>Current Output: %1</source>
        <translation>Aktuelle Leistung: %1</translation>
    </message>
</context>
<context>
    <name>StatusPresentation</name>
    <message>
        <source>Last reading at %1</source>
        <translation>Letzter Messwert um %1</translation>
    </message>
    <message>
        <source>Last reading on %1 at %2</source>
        <translation>Letzter Messwert am %1 um %2</translation>
    </message>
</context>
<context>
    <name>URLError</name>
    <message>
        <source>The proxy refuses to connect to the server (HTTP %1).</source>
        <translation>Der Proxy verweigert die Verbindung zum Server (HTTP %1).</translation>
    </message>
    <message>
        <source>Could not connect to the proxy.</source>
        <translation>Es kann keine Verbindung zum Proxy hergestellt werden.</translation>
    </message>
    <message>
        <source>The reply could not be decompressed.</source>
        <translation>Die Antwort kann nicht entpackt werden.</translation>
    </message>
    <message>
        <source>The program &quot;curl&quot; could not be started.</source>
        <translation>Das Programm „curl“ kann nicht gestartet werden.</translation>
    </message>
    <message>
        <source>The Internet connection appears to be offline.</source>
        <translation>Es scheint keine Internetverbindung zu bestehen.</translation>
    </message>
    <message>
        <source>The network connection was lost.</source>
        <translation>Die Netzwerkverbindung ist abgebrochen.</translation>
    </message>
    <message>
        <source>A server with the specified hostname could not be found.</source>
        <translation>Ein Server mit diesem Namen wurde nicht gefunden.</translation>
    </message>
    <message>
        <source>Could not connect to the server.</source>
        <translation>Es kann keine Verbindung zum Server hergestellt werden.</translation>
    </message>
    <message>
        <source>The hostname could not be looked up.</source>
        <translation>Der Name des Servers kann nicht aufgelöst werden.</translation>
    </message>
    <message>
        <source>The request timed out.</source>
        <translation>Die Anfrage wurde nicht rechtzeitig beantwortet.</translation>
    </message>
    <message>
        <source>The request was cancelled.</source>
        <translation>Die Anfrage wurde abgebrochen.</translation>
    </message>
    <message>
        <source>A secure connection to the server could not be made.</source>
        <translation>Es kann keine sichere Verbindung zum Server hergestellt werden.</translation>
    </message>
    <message>
        <source>The reply is too large.</source>
        <translation>Die Antwort ist zu groß.</translation>
    </message>
    <message>
        <source>The address or a header of the request is not valid.</source>
        <translation>Die Adresse oder eine Kopfzeile der Anfrage ist ungültig.</translation>
    </message>
    <message>
        <source>The network request failed.</source>
        <translation>Die Netzwerkanfrage ist fehlgeschlagen.</translation>
    </message>
</context>
<context>
    <name>Varnel::AccountPane</name>
    <message>
        <source>The password could not be deleted. Start or unlock the keyring, then sign out again.</source>
        <translation>Das Passwort konnte nicht gelöscht werden. Starten oder entsperren Sie den Schlüsselbund und melden Sie sich dann erneut ab.</translation>
    </message>
    <message>
        <source>The password could not be stored. Start or unlock the keyring, then save again.</source>
        <translation>Das Passwort konnte nicht gespeichert werden. Starten oder entsperren Sie den Schlüsselbund und speichern Sie dann erneut.</translation>
    </message>
    <message>
        <source>The settings could not be stored. Make room on the disk, then save again.</source>
        <translation>Die Einstellungen konnten nicht gespeichert werden. Schaffen Sie Platz auf dem Datenträger und speichern Sie dann erneut.</translation>
    </message>
    <message>
        <source>E-mail address</source>
        <translation>E-Mail-Adresse</translation>
    </message>
    <message>
        <source>Found automatically</source>
        <translation>Wird automatisch gefunden</translation>
    </message>
    <message>
        <source>S&amp;ign Out</source>
        <translation>Ab&amp;melden</translation>
    </message>
    <message>
        <source>Save and &amp;Connect</source>
        <translation>&amp;Speichern und verbinden</translation>
    </message>
    <message>
        <source>Signing out deletes the password and the samples that are stored on this computer.</source>
        <translation>Beim Abmelden werden das Passwort und die Messwerte gelöscht, die auf diesem Rechner gespeichert sind.</translation>
    </message>
    <message>
        <source>&amp;Account</source>
        <translation>&amp;Konto</translation>
    </message>
    <message>
        <source>&amp;Password</source>
        <translation>&amp;Passwort</translation>
    </message>
    <message>
        <source>A&amp;dvanced</source>
        <translation>Er&amp;weitert</translation>
    </message>
    <message>
        <source>&amp;Base URL</source>
        <translation>Basis-&amp;URL</translation>
    </message>
    <message>
        <source>S&amp;tation ID</source>
        <translation>Anlagen-&amp;ID</translation>
    </message>
    <message>
        <source>Signing in</source>
        <translation>Anmeldung läuft</translation>
    </message>
    <message>
        <source>Hides the advanced fields</source>
        <translation>Verbirgt die erweiterten Felder</translation>
    </message>
    <message>
        <source>Shows the advanced fields</source>
        <translation>Zeigt die erweiterten Felder</translation>
    </message>
    <message>
        <source>&amp;Hide</source>
        <translation>Verber&amp;gen</translation>
    </message>
    <message>
        <source>Sho&amp;w</source>
        <translation>Zei&amp;gen</translation>
    </message>
    <message>
        <source>Hide password</source>
        <translation>Passwort verbergen</translation>
    </message>
    <message>
        <source>Show password</source>
        <translation>Passwort zeigen</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>Abbre&amp;chen</translation>
    </message>
    <message>
        <source>The base URL begins with http: your password can be read on its way there. Prefer https.</source>
        <translation>Die Basis-URL beginnt mit http: Ihr Passwort kann unterwegs mitgelesen werden. Besser ist https.</translation>
    </message>
</context>
<context>
    <name>Varnel::GeneralPane</name>
    <message>
        <source>&amp;Launch at login</source>
        <translation>Bei der Anmeldung &amp;starten</translation>
    </message>
    <message>
        <source> minutes</source>
        <translation> Minuten</translation>
    </message>
    <message>
        <source>&amp;Update every</source>
        <translation>Abf&amp;rage alle</translation>
    </message>
    <message>
        <source>from %1 to %2</source>
        <translation>von %1 bis %2</translation>
    </message>
    <message>
        <source>Show output &amp;chart</source>
        <translation>Leistungs&amp;diagramm zeigen</translation>
    </message>
    <message>
        <source>Chart &amp;scale</source>
        <translation>Skala des Dia&amp;gramms</translation>
    </message>
    <message>
        <source>Show &amp;dock icon</source>
        <translation>&amp;Programmsymbol zeigen</translation>
    </message>
    <message>
        <source>Keeps Varnel in the taskbar or dock.</source>
        <translation>Hält Varnel in der Fensterleiste oder im Dock.</translation>
    </message>
    <message>
        <source>This desktop offers no such entry. The switch takes effect on one that does.</source>
        <translation>Dieser Desktop bietet keinen solchen Eintrag. Der Schalter wirkt auf einem, der ihn hat.</translation>
    </message>
    <message>
        <source>&amp;Icon appearance</source>
        <translation>Aussehen des S&amp;ymbols</translation>
    </message>
</context>
<context>
    <name>Varnel::NotificationsPane</name>
    <message>
        <source>Varnel shows notifications once it is installed.</source>
        <translation>Varnel zeigt Benachrichtigungen, sobald es installiert ist.</translation>
    </message>
    <message>
        <source>No notification service is running, so nothing can be shown. Start the notification service of your desktop, or install one.</source>
        <translation>Es läuft kein Benachrichtigungsdienst, deshalb kann nichts gezeigt werden. Starten Sie den Ihrer Arbeitsumgebung oder installieren Sie einen.</translation>
    </message>
    <message>
        <source>Notifications are blocked. Allow them for Varnel in the notification settings of your desktop.</source>
        <translation>Benachrichtigungen sind gesperrt. Erlauben Sie sie für Varnel in den Einstellungen Ihrer Arbeitsumgebung.</translation>
    </message>
    <message>
        <source>Notifications are allowed.</source>
        <translation>Benachrichtigungen sind erlaubt.</translation>
    </message>
    <message>
        <source>Production &amp;starts</source>
        <translation>die Erzeugung be&amp;ginnt</translation>
    </message>
    <message>
        <source>Show a notification when:</source>
        <translation>Benachrichtigen, wenn:</translation>
    </message>
    <message>
        <source>Production &amp;ends</source>
        <translation>die Erzeugung &amp;endet</translation>
    </message>
    <message>
        <source>Output &amp;rises above 1 kW</source>
        <translation>die Leistung über 1 kW s&amp;teigt</translation>
    </message>
</context>
<context>
    <name>Varnel::PreferencesWindow</name>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>&amp;General</source>
        <translation>&amp;Allgemein</translation>
    </message>
    <message>
        <source>Acc&amp;ount</source>
        <translation>K&amp;onto</translation>
    </message>
    <message>
        <source>&amp;Notifications</source>
        <translation>&amp;Benachrichtigungen</translation>
    </message>
</context>
</TS>

#include <VarnelSettings/Linux/AutostartLoginItem.h>

#include <VarnelShared/PrivateFiles.h>

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <glib.h>

#include <array>
#include <memory>
#include <utility>

namespace Varnel {

namespace {
constexpr char group[] = G_KEY_FILE_DESKTOP_GROUP;

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
using Text = std::unique_ptr<char, decltype(&g_free)>;

KeyFile makeKeyFile() {
    return {g_key_file_new(), g_key_file_unref};
}

/// A missing value or one that is not a boolean is none.
std::optional<bool> flag(GKeyFile* entry, const char* key) {
    g_autoptr(GError) error = nullptr;
    const bool value = g_key_file_get_boolean(entry, group, key, &error) != FALSE;
    return error ? std::nullopt : std::optional(value);
}

bool isDisabledBySession(GKeyFile* entry) {
    return flag(entry, G_KEY_FILE_DESKTOP_KEY_HIDDEN) == true || flag(entry, "X-GNOME-Autostart-enabled") == false;
}

/// The program of an Exec value, whose arguments are quoted much as in a shell and whose percent signs are doubled.
QString programOf(const char* exec) {
    g_auto(GStrv) arguments = nullptr;
    if (!exec || !g_shell_parse_argv(exec, nullptr, &arguments, nullptr)) {
        return {};
    }
    return QFile::decodeName(arguments[0]).replace(QStringLiteral("%%"), QStringLiteral("%"));
}

bool startsExistingProgram(GKeyFile* entry) {
    const Text exec(g_key_file_get_string(entry, group, G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr), g_free);
    const QString program = programOf(exec.get());
    return !program.isEmpty() && !QStandardPaths::findExecutable(program).isEmpty();
}

/// One quoted argument of an Exec value. The escaping of the file format itself comes on top of it.
QByteArray quotedForExec(const QString& argument) {
    QByteArray quoted = "\"";
    for (const char c : QFile::encodeName(argument)) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') {
            quoted += '\\';
        } else if (c == '%') {
            quoted += '%';
        }
        quoted += c;
    }
    return quoted + '"';
}
} // namespace

AutostartLoginItem::AutostartLoginItem(const QString& autostartFolder, const QString& bundleIdentifier,
                                       const QString& executable)
    : m_path(autostartFolder + QLatin1Char('/') + bundleIdentifier + QStringLiteral(".desktop"))
    , m_bundleIdentifier(bundleIdentifier)
    , m_executable(executable) {}

LoginItemStatus AutostartLoginItem::status() const {
    if (const QFileInfo file(m_path); file.exists() && !file.isFile()) {
        return LoginItemStatus::notFound; // a pipe would be waited for
    }
    const KeyFile entry = makeKeyFile();
    g_autoptr(GError) error = nullptr;
    if (!g_key_file_load_from_file(entry.get(), QFile::encodeName(m_path).constData(), G_KEY_FILE_NONE, &error)) {
        const bool missing = g_error_matches(error, G_FILE_ERROR, G_FILE_ERROR_NOENT) != FALSE;
        return missing ? LoginItemStatus::notRegistered : LoginItemStatus::notFound;
    }
    if (isDisabledBySession(entry.get())) {
        return LoginItemStatus::requiresApproval;
    }
    return startsExistingProgram(entry.get()) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

Result<void> AutostartLoginItem::registerItem() {
    constexpr QFileDevice::Permissions readableByAll =
        privateFilePermissions | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    return writeFileAtomically(m_path, entry(), readableByAll);
}

Result<void> AutostartLoginItem::unregisterItem() {
    QFile file(m_path);
    return file.remove() ? Result<void>() : failure(FileError{file.errorString()});
}

QByteArray AutostartLoginItem::entry() const {
    const std::array<std::pair<const char*, QByteArray>, 11> values = {{
        {G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION},
        {G_KEY_FILE_DESKTOP_KEY_VERSION, "1.0"},
        {G_KEY_FILE_DESKTOP_KEY_NAME, "Varnel"},
        {G_KEY_FILE_DESKTOP_KEY_COMMENT, "Shows the current output of your solar station"},
        {G_KEY_FILE_DESKTOP_KEY_EXEC, quotedForExec(m_executable)},
        // With it an entry that outlives the program is passed over in silence.
        {G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, QFile::encodeName(m_executable)},
        {G_KEY_FILE_DESKTOP_KEY_ICON, m_bundleIdentifier.toUtf8()},
        {G_KEY_FILE_DESKTOP_KEY_TERMINAL, "false"},
        {G_KEY_FILE_DESKTOP_KEY_CATEGORIES, "Utility;"},
        {G_KEY_FILE_DESKTOP_KEY_STARTUP_NOTIFY, "false"},
        {"X-GNOME-Autostart-enabled", "true"},
    }};
    const KeyFile entry = makeKeyFile();
    for (const auto& [key, value] : values) {
        g_key_file_set_string(entry.get(), group, key, value.constData());
    }
    gsize length = 0;
    const Text text(g_key_file_to_data(entry.get(), &length, nullptr), g_free);
    return {text.get(), static_cast<qsizetype>(length)};
}

} // namespace Varnel

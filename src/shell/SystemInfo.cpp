#include "shell/SystemInfo.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

bool startDetached(const QString &path) {
    return QProcess::startDetached(path, {});
}

// Tools that describe the system: hardware, operating system, drivers. Process monitors
// (gnome-system-monitor, mate-system-monitor) watch programs instead and are not on the list.
const QStringList PathSystemInfo::KnownTools = {
    QStringLiteral("hardinfo2"),
    QStringLiteral("hardinfo"),
    QStringLiteral("kinfocenter"),
    QStringLiteral("lshw-gtk"),
};

PathSystemInfo::PathSystemInfo(QString searchPath, Launcher launcher)
    : searchPath_(std::move(searchPath)), launcher_(std::move(launcher)) {}

QString PathSystemInfo::toolPath() {
    const QString searchPath = searchPath_.isEmpty() ? qEnvironmentVariable("PATH") : searchPath_;
    const QStringList folders = searchPath.split(QDir::listSeparator(), Qt::SkipEmptyParts);
    if (folders.isEmpty())
        return {};
    for (const QString &tool : KnownTools) {
        const QString found = QStandardPaths::findExecutable(tool, folders);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

bool GetKeyValue(RegistryApi &registry, quint32 KeyRoot, const QString &KeyName,
                 const QString &SubKeyRef, QString &KeyVal) {
    RegistryApi::Key key = 0;
    if (!registry.openKey(KeyRoot, KeyName, RegistryApi::AllAccess, key)) {
        KeyVal.clear();
        return false;
    }
    quint32 type = 0;
    QByteArray buffer(1024, '\0');
    if (!registry.queryValue(key, SubKeyRef, type, buffer)) {
        KeyVal.clear();
        registry.closeKey(key);
        return false;
    }
    const qsizetype end = buffer.indexOf('\0');
    const QByteArray cut = end < 0 ? buffer : buffer.left(end);
    if (type == RegistryApi::StringType)
        KeyVal = QString::fromLocal8Bit(cut);
    else if (type == RegistryApi::DwordType)
        KeyVal = dwordText(cut);
    registry.closeKey(key);
    return true;
}

QString dwordText(const QByteArray &cutBuffer) {
    QString text = QStringLiteral("&h");
    for (auto it = cutBuffer.crbegin(); it != cutBuffer.crend(); ++it)
        text += QString::number(static_cast<unsigned char>(*it), 16).toUpper();
    return text;
}

RegistrySystemInfo::RegistrySystemInfo(RegistryApi &registry, FileExists fileExists,
                                       Launcher launcher)
    : registry_(registry), fileExists_(std::move(fileExists)), launcher_(std::move(launcher)) {}

QString RegistrySystemInfo::toolPath() {
    QString value;
    if (GetKeyValue(registry_, RegistryApi::LocalMachine,
                    QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                    QStringLiteral("PATH"), value))
        return value;
    if (GetKeyValue(registry_, RegistryApi::LocalMachine,
                    QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                    QStringLiteral("MSINFO"), value)) {
        const QString tool = value + QStringLiteral("\\MSINFO32.EXE");
        if (fileExists_(tool))
            return tool;
    }
    return {};
}

#ifdef Q_OS_WIN
namespace {

class WindowsRegistry : public RegistryApi {
public:
    bool openKey(quint32 root, const QString &name, quint32 access, Key &key) override {
        HKEY opened = nullptr;
        const QByteArray path = name.toLocal8Bit();
        if (RegOpenKeyExA(reinterpret_cast<HKEY>(static_cast<quintptr>(root)), path.constData(), 0,
                          access, &opened) != ERROR_SUCCESS)
            return false;
        key = reinterpret_cast<Key>(opened);
        return true;
    }

    bool queryValue(Key key, const QString &valueName, quint32 &type, QByteArray &buffer) override {
        DWORD valueType = 0;
        DWORD size = static_cast<DWORD>(buffer.size());
        const QByteArray name = valueName.toLocal8Bit();
        if (RegQueryValueExA(reinterpret_cast<HKEY>(key), name.constData(), nullptr, &valueType,
                             reinterpret_cast<LPBYTE>(buffer.data()), &size) != ERROR_SUCCESS)
            return false;
        type = valueType;
        return true;
    }

    void closeKey(Key key) override { RegCloseKey(reinterpret_cast<HKEY>(key)); }
};

// The registry must exist before the base that refers to it.
struct OwnedRegistry {
    WindowsRegistry registry;
};

class WindowsSystemInfo : private OwnedRegistry, public RegistrySystemInfo {
public:
    WindowsSystemInfo()
        : RegistrySystemInfo(
              registry, [](const QString &path) { return QFileInfo(path).isFile(); },
              startDetached) {}
};

} // namespace

std::unique_ptr<SystemInfo> platformSystemInfo() {
    return std::make_unique<WindowsSystemInfo>();
}
#else
std::unique_ptr<SystemInfo> platformSystemInfo() {
    return std::make_unique<PathSystemInfo>();
}
#endif

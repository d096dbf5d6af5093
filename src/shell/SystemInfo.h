#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

// The system's own system-information tool, as the About window starts it: find the tool's
// path, then start it.
class SystemInfo {
public:
    virtual ~SystemInfo() = default;
    virtual QString toolPath() = 0; // empty when there is no tool
    // Starts the program as its own process with a normal, focused window, without waiting.
    virtual bool start(const QString &path) = 0;
};

// Starts a program detached from this one; false when it cannot be started.
using Launcher = std::function<bool(const QString &path)>;
bool startDetached(const QString &path);

// Where there is no registry: the first of a fixed list of system-information programs found
// on the search path.
class PathSystemInfo : public SystemInfo {
public:
    static const QStringList KnownTools;

    // An empty search path means the PATH of the environment at the time of the search.
    explicit PathSystemInfo(QString searchPath = {}, Launcher launcher = startDetached);

    QString toolPath() override;
    bool start(const QString &path) override { return launcher_(path); }

private:
    QString searchPath_;
    Launcher launcher_;
};

// The three registry calls GetKeyValue makes, so that its steps also run against a fake.
class RegistryApi {
public:
    using Key = quintptr;
    static constexpr quint32 StringType = 1;            // REG_SZ
    static constexpr quint32 DwordType = 4;             // REG_DWORD
    static constexpr quint32 LocalMachine = 0x80000002; // HKEY_LOCAL_MACHINE
    static constexpr quint32 AllAccess = 0x2003F;       // KEY_ALL_ACCESS

    virtual ~RegistryApi() = default;
    virtual bool openKey(quint32 root, const QString &name, quint32 access, Key &key) = 0;
    // Fills buffer (whose size is the size offered) and type; false when the value is missing.
    virtual bool queryValue(Key key, const QString &valueName, quint32 &type,
                            QByteArray &buffer) = 0;
    virtual void closeKey(Key key) = 0;
};

// Reads value SubKeyRef of key KeyName into KeyVal; false (and KeyVal "") when the key cannot be
// opened or the value read. A key that was opened is always closed again.
bool GetKeyValue(RegistryApi &registry, quint32 KeyRoot, const QString &KeyName,
                 const QString &SubKeyRef, QString &KeyVal);

// The text form of a 32-bit number value: its characters from last to first, each as its
// character code in hexadecimal, after "&h".
QString dwordText(const QByteArray &cutBuffer);

// Where the registry names the tool: the MSINFO path, or MSINFO32.EXE in the shared tools folder.
class RegistrySystemInfo : public SystemInfo {
public:
    using FileExists = std::function<bool(const QString &path)>;

    RegistrySystemInfo(RegistryApi &registry, FileExists fileExists, Launcher launcher);

    QString toolPath() override;
    bool start(const QString &path) override { return launcher_(path); }

private:
    RegistryApi &registry_;
    FileExists fileExists_;
    Launcher launcher_;
};

// The way this platform finds its tool.
std::unique_ptr<SystemInfo> platformSystemInfo();

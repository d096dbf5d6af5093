// Finding the system-information tool: on the search path, and through the registry steps run
// against a fake registry.

#include "shell/SystemInfo.h"
#include "shell/frmAbout.h"
#include "support/ScriptedDialogs.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

class SystemInfoTest : public QObject {
    Q_OBJECT
private slots:
    void pathSearchTakesTheFirstKnownTool_data();
    void pathSearchTakesTheFirstKnownTool();
    void pathSearchUsesTheEnvironmentWhenGivenNoPath();
    void registryFindsTheTool_data();
    void registryFindsTheTool();
    void getKeyValueReadsAndAlwaysCloses_data();
    void getKeyValueReadsAndAlwaysCloses();
    void getKeyValueOpensUnderTheGivenRootWithAllAccess();
    void dwordTextListsCodesLastToFirst_data();
    void dwordTextListsCodesLastToFirst();
    void aToolThatWillNotStartIsReported();
    void aToolThatStartsIsNotReported();
};

namespace {

constexpr quint32 BinaryType = 3;

const QString MsinfoKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
const QString LocationKey = QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location");

bool putFile(const QString &path, bool executable) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("#!/bin/sh\n");
    file.close();
    return !executable ||
           file.setPermissions(file.permissions() | QFileDevice::ExeOwner | QFileDevice::ExeUser);
}

struct Value {
    quint32 type;
    QByteArray bytes;
};

// Keys by name, each with its values; records every call.
class FakeRegistry : public RegistryApi {
public:
    QMap<QString, QMap<QString, Value>> keys;
    int opened = 0;
    int closed = 0;
    quint32 lastRoot = 0;
    quint32 lastAccess = 0;
    qsizetype offeredSize = 0;

    bool openKey(quint32 root, const QString &name, quint32 access, Key &key) override {
        lastRoot = root;
        lastAccess = access;
        if (!keys.contains(name))
            return false;
        ++opened;
        key = Key(std::distance(keys.begin(), keys.find(name)) + 1);
        return true;
    }
    bool queryValue(Key key, const QString &valueName, quint32 &type, QByteArray &buffer) override {
        const QMap<QString, Value> &values = std::next(keys.begin(), qsizetype(key) - 1).value();
        offeredSize = buffer.size();
        if (!values.contains(valueName))
            return false;
        const Value &value = values[valueName];
        type = value.type;
        buffer.replace(0, value.bytes.size(), value.bytes);
        return true;
    }
    void closeKey(Key) override { ++closed; }
};

// A tool that is found or not, and starts or not.
class FakeTool : public SystemInfo {
public:
    QString path;
    bool starts = true;
    QStringList startedPaths;
    QString toolPath() override { return path; }
    bool start(const QString &p) override {
        startedPaths.append(p);
        return starts;
    }
};

} // namespace

void SystemInfoTest::pathSearchTakesTheFirstKnownTool_data() {
    QTest::addColumn<QStringList>("executables"); // "folder/name", folder 0 or 1
    QTest::addColumn<QStringList>("plainFiles");
    QTest::addColumn<QString>("expected"); // "folder/name", or "" for none

    QTest::newRow("nothing") << QStringList{} << QStringList{} << "";
    QTest::newRow("one tool") << QStringList{"1/kinfocenter"} << QStringList{} << "1/kinfocenter";
    QTest::newRow("list order beats folder order")
        << QStringList{"0/gnome-system-monitor", "1/hardinfo"} << QStringList{} << "1/hardinfo";
    QTest::newRow("folder order within one tool")
        << QStringList{"0/hardinfo", "1/hardinfo"} << QStringList{} << "0/hardinfo";
    QTest::newRow("a file that cannot run is passed over")
        << QStringList{"1/lshw-gtk"} << QStringList{"0/hardinfo2"} << "1/lshw-gtk";
    QTest::newRow("unknown programs are ignored")
        << QStringList{"0/top", "0/htop"} << QStringList{} << "";
}

void SystemInfoTest::pathSearchTakesTheFirstKnownTool() {
    QFETCH(QStringList, executables);
    QFETCH(QStringList, plainFiles);
    QFETCH(QString, expected);
    QTemporaryDir folders[2];
    const auto place = [&folders](const QString &entry) {
        return folders[entry.left(1).toInt()].filePath(entry.mid(2));
    };
    for (const QString &entry : executables)
        QVERIFY(putFile(place(entry), true));
    for (const QString &entry : plainFiles)
        QVERIFY(putFile(place(entry), false));

    PathSystemInfo tools(folders[0].path() + QLatin1Char(':') + folders[1].path());
    QCOMPARE(tools.toolPath(), expected.isEmpty() ? QString() : place(expected));
}

void SystemInfoTest::pathSearchUsesTheEnvironmentWhenGivenNoPath() {
    const QByteArray saved = qgetenv("PATH");
    QTemporaryDir folder;
    QVERIFY(putFile(folder.filePath(QStringLiteral("hardinfo")), true));
    qputenv("PATH", folder.path().toLocal8Bit());
    PathSystemInfo tools;
    const QString found = tools.toolPath();
    qputenv("PATH", "");
    const QString foundWithoutPath = tools.toolPath();
    qputenv("PATH", saved);
    QCOMPARE(found, folder.filePath(QStringLiteral("hardinfo")));
    QCOMPARE(foundWithoutPath, QString());
}

void SystemInfoTest::registryFindsTheTool_data() {
    QTest::addColumn<QString>("msinfoPath");     // "" when the value is missing
    QTest::addColumn<QString>("locationFolder"); // "" when the value is missing
    QTest::addColumn<bool>("exeExists");
    QTest::addColumn<QString>("expected");

    QTest::newRow("MSINFO path wins") << "C:\\Tools\\msinfo32.exe"
                                      << "C:\\Other" << true << "C:\\Tools\\msinfo32.exe";
    QTest::newRow("shared tools folder") << ""
                                         << "C:\\Shared" << true << "C:\\Shared\\MSINFO32.EXE";
    QTest::newRow("folder without the program") << ""
                                                << "C:\\Shared" << false << "";
    QTest::newRow("neither value") << ""
                                   << "" << true << "";
}

void SystemInfoTest::registryFindsTheTool() {
    QFETCH(QString, msinfoPath);
    QFETCH(QString, locationFolder);
    QFETCH(bool, exeExists);
    QFETCH(QString, expected);

    FakeRegistry registry;
    registry.keys[MsinfoKey]; // the key exists even when its value does not
    if (!msinfoPath.isEmpty())
        registry.keys[MsinfoKey][QStringLiteral("PATH")] = {1, msinfoPath.toLocal8Bit()};
    if (!locationFolder.isEmpty())
        registry.keys[LocationKey][QStringLiteral("MSINFO")] = {1, locationFolder.toLocal8Bit()};
    QStringList asked;
    RegistrySystemInfo tools(
        registry,
        [&](const QString &path) {
            asked.append(path);
            return exeExists;
        },
        [](const QString &) { return true; });

    QCOMPARE(tools.toolPath(), expected);
    QCOMPARE(registry.closed, registry.opened);
    if (msinfoPath.isEmpty() && !locationFolder.isEmpty())
        QCOMPARE(asked, QStringList{locationFolder + QStringLiteral("\\MSINFO32.EXE")});
    else
        QVERIFY(asked.isEmpty());
}

void SystemInfoTest::getKeyValueReadsAndAlwaysCloses_data() {
    QTest::addColumn<bool>("keyExists");
    QTest::addColumn<bool>("valueExists");
    QTest::addColumn<uint>("type");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("read");
    QTest::addColumn<QString>("keyVal"); // KeyVal held "before" on the way in

    QTest::newRow("missing key") << false << false << 1u << QByteArray() << false << "";
    QTest::newRow("missing value") << true << false << 1u << QByteArray() << false << "";
    QTest::newRow("string") << true << true << 1u << QByteArray("C:\\msinfo.exe") << true
                            << "C:\\msinfo.exe";
    QTest::newRow("string cut at its first zero")
        << true << true << 1u << QByteArray("abc\0def", 7) << true << "abc";
    QTest::newRow("number") << true << true << 4u << QByteArray("\x05\x01", 2) << true << "&h15";
    QTest::newRow("other type keeps KeyVal")
        << true << true << BinaryType << QByteArray("xyz") << true << "before";
}

void SystemInfoTest::getKeyValueReadsAndAlwaysCloses() {
    QFETCH(bool, keyExists);
    QFETCH(bool, valueExists);
    QFETCH(uint, type);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, read);
    QFETCH(QString, keyVal);

    FakeRegistry registry;
    if (keyExists)
        registry.keys[QStringLiteral("K")];
    if (valueExists)
        registry.keys[QStringLiteral("K")][QStringLiteral("V")] = {type, bytes};

    QString value = QStringLiteral("before");
    QCOMPARE(GetKeyValue(registry, RegistryApi::LocalMachine, QStringLiteral("K"),
                         QStringLiteral("V"), value),
             read);
    QCOMPARE(value, keyVal);
    QCOMPARE(registry.opened, keyExists ? 1 : 0);
    QCOMPARE(registry.closed, registry.opened);
}

void SystemInfoTest::getKeyValueOpensUnderTheGivenRootWithAllAccess() {
    FakeRegistry registry;
    registry.keys[QStringLiteral("K")][QStringLiteral("V")] = {1, "x"};
    QString value;
    QVERIFY(GetKeyValue(registry, 0x80000002, QStringLiteral("K"), QStringLiteral("V"), value));
    QCOMPARE(registry.lastRoot, 0x80000002u);
    QCOMPARE(registry.lastAccess, 0x2003Fu);
    QCOMPARE(registry.offeredSize, 1024);
}

void SystemInfoTest::dwordTextListsCodesLastToFirst_data() {
    QTest::addColumn<QByteArray>("cut");
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QByteArray() << "&h";
    QTest::newRow("one byte") << QByteArray("\x2a") << "&h2A";
    QTest::newRow("no padding of small codes") << QByteArray("\x01\x0f\xff") << "&hFFF1";
}

void SystemInfoTest::dwordTextListsCodesLastToFirst() {
    QFETCH(QByteArray, cut);
    QFETCH(QString, text);
    QCOMPARE(dwordText(cut), text);
}

void SystemInfoTest::aToolThatWillNotStartIsReported() {
    ScriptedDialogs dialogs;
    FakeTool tool;
    tool.path = QStringLiteral("/opt/broken-tool");
    tool.starts = false;
    frmAbout about(dialogs, tool, nullptr);
    about.show();
    about.StartSysInfo();
    QCOMPARE(tool.startedPaths, QStringList{tool.path});
    QCOMPARE(dialogs.messageTexts(), QStringList{"System Information Is Unavailable At This Time"});
    QVERIFY(about.isVisible());
}

void SystemInfoTest::aToolThatStartsIsNotReported() {
    ScriptedDialogs dialogs;
    FakeTool tool;
    tool.path = QStringLiteral("/usr/bin/hardinfo");
    frmAbout about(dialogs, tool, nullptr);
    about.cmdSysInfo_Click();
    QCOMPARE(tool.startedPaths, QStringList{tool.path});
    QVERIFY(dialogs.messages.isEmpty());
}

QTEST_MAIN(SystemInfoTest)
#include "SystemInfoTest.moc"

// Finding and starting the system-information tool: on the search path, and through the
// registry steps run against a fake registry.

#include "shell/SystemInfo.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString MsinfoKey = "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO";
const QString LocationKey = "SOFTWARE\\Microsoft\\Shared Tools Location";

struct Value {
    quint32 type;
    QByteArray bytes;
};

// Keys by name, each with its values; records the calls made.
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
        type = values[valueName].type;
        buffer.replace(0, values[valueName].bytes.size(), values[valueName].bytes);
        return true;
    }
    void closeKey(Key) override { ++closed; }
};

} // namespace

class SystemInfoTest : public QObject {
    Q_OBJECT
private slots:
    // Files as "folder/name" in one of two search folders, "*" after an executable one.
    void pathSearchTakesTheFirstKnownTool_data() {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("expected"); // "folder/name", or "" for none
        QTest::newRow("nothing") << QStringList{} << "";
        QTest::newRow("one tool") << QStringList{"1/kinfocenter*"} << "1/kinfocenter";
        QTest::newRow("list order beats folder order")
            << QStringList{"0/lshw-gtk*", "1/hardinfo*"} << "1/hardinfo";
        QTest::newRow("folder order within one tool")
            << QStringList{"0/hardinfo*", "1/hardinfo*"} << "0/hardinfo";
        QTest::newRow("a file that cannot run is passed over")
            << QStringList{"1/lshw-gtk*", "0/hardinfo2"} << "1/lshw-gtk";
        QTest::newRow("unknown programs are ignored") << QStringList{"0/top*", "0/htop*"} << "";
        QTest::newRow("process monitors show no system information")
            << QStringList{"0/gnome-system-monitor*", "1/mate-system-monitor*"} << "";
    }
    void pathSearchTakesTheFirstKnownTool() {
        QFETCH(QStringList, files);
        QFETCH(QString, expected);
        QTemporaryDir folders[2];
        const auto place = [&folders](QString entry) {
            entry.remove('*');
            return folders[entry.left(1).toInt()].filePath(entry.mid(2));
        };
        for (const QString &entry : files) {
            QFile file(place(entry));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.close();
            if (entry.endsWith('*'))
                QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));
        }
        PathSystemInfo tools(folders[0].path() + ':' + folders[1].path());
        QCOMPARE(tools.toolPath(), expected.isEmpty() ? QString() : place(expected));
    }

    void registryFindsTheTool_data() {
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
    void registryFindsTheTool() {
        QFETCH(QString, msinfoPath);
        QFETCH(QString, locationFolder);
        QFETCH(bool, exeExists);
        QFETCH(QString, expected);
        FakeRegistry registry;
        registry.keys[MsinfoKey]; // the key exists even when its value does not
        if (!msinfoPath.isEmpty())
            registry.keys[MsinfoKey]["PATH"] = {RegistryApi::StringType, msinfoPath.toLocal8Bit()};
        if (!locationFolder.isEmpty())
            registry.keys[LocationKey]["MSINFO"] = {RegistryApi::StringType,
                                                    locationFolder.toLocal8Bit()};
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
            QCOMPARE(asked, QStringList{locationFolder + "\\MSINFO32.EXE"});
        else
            QVERIFY(asked.isEmpty());
    }

    // Every key is opened under the root given, with all access and a 1024-byte buffer, and
    // closed again whatever came of reading it.
    void getKeyValueReadsAndAlwaysCloses_data() {
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
        QTest::newRow("number") << true << true << 4u << QByteArray("\x05\x01", 2) << true
                                << "&h15";
        QTest::newRow("binary keeps KeyVal")
            << true << true << 3u << QByteArray("xyz") << true << "before";
    }
    void getKeyValueReadsAndAlwaysCloses() {
        QFETCH(bool, keyExists);
        QFETCH(bool, valueExists);
        QFETCH(uint, type);
        QFETCH(QByteArray, bytes);
        QFETCH(bool, read);
        QFETCH(QString, keyVal);
        FakeRegistry registry;
        if (keyExists)
            registry.keys["K"];
        if (valueExists)
            registry.keys["K"]["V"] = {type, bytes};

        QString value = "before";
        QCOMPARE(GetKeyValue(registry, 0x80000002, "K", "V", value), read);
        QCOMPARE(value, keyVal);
        QCOMPARE(registry.opened, keyExists ? 1 : 0);
        QCOMPARE(registry.closed, registry.opened);
        QCOMPARE(registry.lastRoot, 0x80000002u);
        QCOMPARE(registry.lastAccess, 0x2003Fu);
        QCOMPARE(registry.offeredSize, keyExists ? 1024 : 0);
    }

    void dwordTextListsCodesLastToFirst_data() {
        QTest::addColumn<QByteArray>("cut");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << QByteArray() << "&h";
        QTest::newRow("one byte") << QByteArray("\x2a") << "&h2A";
        QTest::newRow("no padding of small codes") << QByteArray("\x01\x0f\xff") << "&hFFF1";
    }
    void dwordTextListsCodesLastToFirst() {
        QFETCH(QByteArray, cut);
        QFETCH(QString, text);
        QCOMPARE(dwordText(cut), text);
    }
};

QTEST_MAIN(SystemInfoTest)
#include "SystemInfoTest.moc"

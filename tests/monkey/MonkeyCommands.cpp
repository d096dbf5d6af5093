#include "MonkeyShared.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"

#include <QAction>
#include <QApplication>
#include <QTest>
#include <QToolBar>

// Menu commands, toolbar buttons and shortcut keys, and what each must have done.

using namespace monkey;

QString MonkeyWalk::commandAction(QString &description) {
    static const CommandEntry Commands[] = {
        {Command::New, "mnuFileNew", "New", Qt::CTRL | Qt::Key_N},
        {Command::Open, "mnuFileOpen", "Open", Qt::CTRL | Qt::Key_O},
        {Command::Save, "mnuFileSave", "Save", Qt::CTRL | Qt::Key_S},
        {Command::SaveAs, "mnuFileSaveAs", nullptr, {}},
        {Command::Exit, "mnuFileExit", nullptr, {}},
        {Command::Close, nullptr, nullptr, {}},
        {Command::ViewStart, "mnuViewStart", nullptr, {}},
        {Command::ViewFinish, "mnuViewFinish", nullptr, {}},
        {Command::ViewPut, "mnuViewBlockPut", nullptr, {}},
        {Command::ViewTake, "mnuViewBlockTake", nullptr, {}},
        {Command::DecreaseWidth, "mnuLevelDecreaseWidth", "DWidth", Qt::Key_F1},
        {Command::IncreaseWidth, "mnuLevelIncreaseWidth", "IWidth", Qt::Key_F2},
        {Command::DecreaseHeight, "mnuLevelDecreaseHeight", "DHeight", Qt::Key_F3},
        {Command::IncreaseHeight, "mnuLevelIncreaseHeight", "IHeight", Qt::Key_F4},
        {Command::Remove, "mnuLevelRemove", "RemoveLevel", Qt::Key_F5},
        {Command::Add, "mnuLevelAdd", "AddLevel", Qt::Key_F6},
        {Command::Previous, "mnuLevelPrevious", "PreviousLevel", Qt::Key_F7},
        {Command::Next, "mnuLevelNext", "NextLevel", Qt::Key_F8},
        {Command::Mode0, "mnuToolsMouseChoice0", nullptr, {}},
        {Command::Mode1, "mnuToolsMouseChoice1", nullptr, {}},
        {Command::Mode2, "mnuToolsMouseChoice2", nullptr, {}},
        {Command::Mode3, "mnuToolsMouseChoice3", nullptr, {}},
        {Command::SetFloor, "mnuToolsSetFloor", nullptr, Qt::CTRL | Qt::Key_F},
        {Command::Enemies, "mnuToolsEnemies", nullptr, Qt::CTRL | Qt::Key_E},
        {Command::Pickups, "mnuToolsPickups", nullptr, Qt::CTRL | Qt::Key_P},
        {Command::Doors, "mnuToolsDoors", nullptr, Qt::CTRL | Qt::Key_D},
        {Command::About, "mnuHelpAbout", "About", Qt::Key_F12},
    };
    // The window is closed seldom, so that levelsets grow between fresh starts.
    const CommandEntry *entry = &Commands[pick(std::size(Commands))];
    if ((entry->command == Command::Close || entry->command == Command::Exit) && pick(4) != 0)
        entry = &Commands[pick(std::size(Commands))];

    const Before before = snapshot();
    frmMain &w = *window_;
    const int route = pick(3);
    if (entry->command == Command::Close) {
        description = QStringLiteral("close the window");
        w.close();
    } else if (route == 1 && entry->toolbarKey) {
        description = QStringLiteral("toolbar %1").arg(QLatin1StringView(entry->toolbarKey));
        QAction *button = w.findChild<QAction *>(QLatin1StringView(entry->toolbarKey));
        QTest::mouseClick(w.tbToolBar->widgetForAction(button), Qt::LeftButton);
    } else if (route == 2 && entry->shortcut != QKeyCombination() &&
               QApplication::activeWindow() == &w) {
        description = QStringLiteral("key %1").arg(QKeySequence(entry->shortcut).toString());
        w.picLevel->setFocus(); // a focused text field would take some Ctrl keys itself
        QTest::keyClick(&w, entry->shortcut.key(), entry->shortcut.keyboardModifiers());
    } else {
        description = QStringLiteral("menu %1").arg(QLatin1StringView(entry->menuItem));
        w.findChild<QAction *>(QLatin1StringView(entry->menuItem))->trigger();
    }
    count(description.section(u' ', 0, 0));
    return checkCommand(entry->command, before, description);
}

QString MonkeyWalk::checkCommand(Command command, const Before &before, QString &description) {
    switch (command) {
    case Command::New:
    case Command::Open:
    case Command::Save:
    case Command::SaveAs:
    case Command::Exit:
    case Command::Close: {
        QString fault = checkFileCommand(command, before);
        QStringList answers;
        for (auto a : dialogs_.promptAnswers)
            answers.append(buttonName(a));
        for (const QString &name : dialogs_.givenSaveNames)
            answers.append(QStringLiteral("save \"%1\"").arg(name));
        for (const QString &name : dialogs_.givenOpenNames)
            answers.append(QStringLiteral("open \"%1\"").arg(name));
        if (!answers.isEmpty())
            description += QStringLiteral(" [") + answers.join(QStringLiteral(", ")) + u']';
        return fault;
    }
    default:
        break;
    }

    const frmMain &w = *window_;
    const Levelset &now = w.levelset;
    const Levelset &was = before.levelset;
    int messagesExpected = 0;
    int modalsExpected = 0;
    bool levelsetMayChange = false;
    QString fault;
    const auto expectEqual = [&](const char *what, int actual, int expected) {
        if (fault.isEmpty() && actual != expected)
            fault = QStringLiteral("%1 is %2, expected %3")
                        .arg(QLatin1StringView(what))
                        .arg(actual)
                        .arg(expected);
    };
    const int n = was.levelCount;
    const int current = was.currentLevel;
    const LevelRecord &level = was.current();

    switch (command) {
    case Command::ViewStart:
    case Command::ViewFinish:
    case Command::ViewPut:
    case Command::ViewTake: {
        const int item = static_cast<int>(command) - static_cast<int>(Command::ViewStart);
        const Before after = snapshot();
        for (int i = 0; i < 4; ++i)
            expectEqual("a View check mark", after.viewItems[i],
                        i == item ? !before.viewItems[i] : before.viewItems[i]);
        break;
    }
    case Command::DecreaseWidth:
    case Command::IncreaseWidth:
    case Command::DecreaseHeight:
    case Command::IncreaseHeight: {
        levelsetMayChange = true;
        const bool widthAxis =
            command == Command::DecreaseWidth || command == Command::IncreaseWidth;
        const bool grow = command == Command::IncreaseWidth || command == Command::IncreaseHeight;
        const int size = widthAxis ? level.width() : level.height();
        const int least = widthAxis ? LevelRecord::MinWidth : LevelRecord::MinHeight;
        int expected = size;
        if (grow && size < LevelRecord::GridSize)
            ++expected;
        if (!grow && size > least)
            --expected;
        LevelRecord resized = level;
        resized.header[widthAxis ? LevelRecord::Width : LevelRecord::Height] =
            static_cast<std::uint8_t>(expected);
        if (now.current() != resized)
            fault = QStringLiteral("resizing a %1 x %2 level gave %3 x %4, tiles or header "
                                   "otherwise as before: %5")
                        .arg(level.width())
                        .arg(level.height())
                        .arg(now.current().width())
                        .arg(now.current().height())
                        .arg(now.current().tiles == level.tiles ? "yes" : "no");
        for (int i = 0; i < Levelset::MaxLevels && fault.isEmpty(); ++i)
            if (i != current && now.levels[i] != was.levels[i])
                fault = QStringLiteral("resizing level %1 changed level %2").arg(current).arg(i);
        break;
    }
    case Command::Remove:
        expectEqual("levelCount after Remove", now.levelCount,
                    (n > 1 && current + 1 < n) ? n - 1 : n);
        expectEqual("currentLevel after Remove", now.currentLevel, current);
        break;
    case Command::Add:
        expectEqual("levelCount after Add", now.levelCount, std::min(n + 1, 8));
        expectEqual("currentLevel after Add", now.currentLevel, current);
        break;
    case Command::Previous:
    case Command::Next: {
        // The panel's handlers may rewrite a foreign level or alien type of the level shown.
        levelsetMayChange = true;
        const int step = command == Command::Next ? 1 : -1;
        const int expected = (current + step >= 0 && current + step < n) ? current + step : current;
        expectEqual("levelCount", now.levelCount, n);
        expectEqual("currentLevel", now.currentLevel, expected);
        if (expected != current)
            expectEqual("levelCursor's left edge after a level change", w.levelCursor->pos().x(),
                        0);
        for (int i = 0; i < Levelset::MaxLevels && fault.isEmpty(); ++i)
            if (now.levels[i].tiles != was.levels[i].tiles)
                fault = QStringLiteral("changing the level changed the tiles of level %1").arg(i);
        break;
    }
    case Command::Mode0:
    case Command::Mode1:
    case Command::Mode2:
    case Command::Mode3:
        expectEqual("rightButtonMode", w.rightButtonMode,
                    static_cast<int>(command) - static_cast<int>(Command::Mode0));
        break;
    case Command::SetFloor: {
        levelsetMayChange = true;
        const int type = level.header[LevelRecord::LevelType];
        for (int x = 0; x < LevelRecord::GridSize && fault.isEmpty(); ++x)
            for (int y = 0; y < LevelRecord::GridSize && fault.isEmpty(); ++y) {
                int expected = level.tile(x, y);
                if (type == 0 && expected == 1)
                    expected = 0;
                else if (type == 1 && expected == 0)
                    expected = 1;
                if (now.current().tile(x, y) != expected)
                    fault = QStringLiteral("Set Floor on a level of type %1 left %2 at (%3, %4)")
                                .arg(type)
                                .arg(now.current().tile(x, y))
                                .arg(x)
                                .arg(y);
            }
        break;
    }
    case Command::Enemies:
    case Command::Pickups:
    case Command::Doors:
        messagesExpected = 1;
        if (dialogs_.messages.size() == 1 && dialogs_.messages[0].icon != QMessageBox::Information)
            fault = QStringLiteral("a count shown without the information icon");
        break;
    case Command::About:
        modalsExpected = 1;
        break;
    default:
        break;
    }
    const bool listCommand = command == Command::Add || command == Command::Remove ||
                             command == Command::Previous || command == Command::Next;
    if (fault.isEmpty() && !listCommand &&
        (now.levelCount != was.levelCount || now.currentLevel != was.currentLevel))
        fault = QStringLiteral("the level list changed");
    if (fault.isEmpty() && !levelsetMayChange &&
        (now.levels != was.levels || now.passcodes != was.passcodes ||
         now.reserved1 != was.reserved1 || now.reserved2 != was.reserved2))
        fault = QStringLiteral("the levelset changed");
    expectEqual("messages shown", static_cast<int>(dialogs_.messages.size()), messagesExpected);
    expectEqual("modal windows shown", dialogs_.modalCount, modalsExpected);
    expectEqual("file dialogs shown",
                static_cast<int>(dialogs_.saveQuestions.size() + dialogs_.openQuestions.size()), 0);
    return fault;
}

#include "shell/frmMain.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>

// The menu bar and the two popup menus that open under the mouse.

namespace {

QMenu *addMenu(QMenuBar *bar, const char *name, const QString &caption) {
    QMenu *menu = bar->addMenu(caption);
    menu->setObjectName(QLatin1StringView(name));
    menu->menuAction()->setObjectName(QLatin1StringView(name));
    return menu;
}

void addSeparator(QMenu *menu, const char *name) {
    menu->addSeparator()->setObjectName(QLatin1StringView(name));
}

// Choosing an item with a check mark flips the mark before any handler runs; the handler sets
// the mark itself, so that flip is undone first.
void undoCheckFlip(QAction *item, bool checked) {
    if (!item->isCheckable())
        return;
    const QSignalBlocker quiet(item);
    item->setChecked(!checked);
}

} // namespace

QAction *frmMain::addItem(QMenu *menu, const char *name, const QString &caption,
                          void (frmMain::*handler)(), const QKeySequence &shortcut) {
    QAction *item = menu->addAction(caption);
    item->setObjectName(QLatin1StringView(name));
    item->setShortcut(shortcut);
    connect(item, &QAction::triggered, this, [this, item, handler](bool checked) {
        undoCheckFlip(item, checked);
        (this->*handler)();
    });
    return item;
}

void frmMain::createMenus() {
    QMenuBar *bar = menuBar();

    mnuFile = addMenu(bar, "mnuFile", QStringLiteral("&File"));
    mnuFileNew = addItem(mnuFile, "mnuFileNew", QStringLiteral("&New"), &frmMain::mnuFileNew_Click,
                         QKeySequence(Qt::CTRL | Qt::Key_N));
    mnuFileOpen = addItem(mnuFile, "mnuFileOpen", QStringLiteral("&Open..."),
                          &frmMain::mnuFileOpen_Click, QKeySequence(Qt::CTRL | Qt::Key_O));
    addSeparator(mnuFile, "mnuFileBar0");
    mnuFileSave = addItem(mnuFile, "mnuFileSave", QStringLiteral("&Save"),
                          &frmMain::mnuFileSave_Click, QKeySequence(Qt::CTRL | Qt::Key_S));
    mnuFileSaveAs = addItem(mnuFile, "mnuFileSaveAs", QStringLiteral("Save &As..."),
                            &frmMain::mnuFileSaveAs_Click);
    addSeparator(mnuFile, "mnuFileBar1");
    mnuFileExit =
        addItem(mnuFile, "mnuFileExit", QStringLiteral("E&xit"), &frmMain::mnuFileExit_Click);

    mnuView = addMenu(bar, "mnuView", QStringLiteral("&View"));
    mnuViewStart = addItem(mnuView, "mnuViewStart", QStringLiteral("&Start Position"),
                           &frmMain::mnuViewStart_Click);
    mnuViewFinish = addItem(mnuView, "mnuViewFinish", QStringLiteral("&Finish Position"),
                            &frmMain::mnuViewFinish_Click);
    addSeparator(mnuView, "mnuViewBar1");
    mnuViewBlockPut = addItem(mnuView, "mnuViewBlockPut", QStringLiteral("Block to &Put"),
                              &frmMain::mnuViewBlockPut_Click);
    mnuViewBlockTake = addItem(mnuView, "mnuViewBlockTake", QStringLiteral("Block to &Take"),
                               &frmMain::mnuViewBlockTake_Click);
    for (QAction *item : {mnuViewStart, mnuViewFinish, mnuViewBlockPut, mnuViewBlockTake})
        item->setCheckable(true);
    mnuViewStart->setChecked(true);
    mnuViewFinish->setChecked(true);

    mnuLevel = addMenu(bar, "mnuLevel", QStringLiteral("&Level"));
    mnuLevelDecreaseWidth =
        addItem(mnuLevel, "mnuLevelDecreaseWidth", QStringLiteral("Decrease Width"),
                &frmMain::mnuLevelDecreaseWidth_Click, QKeySequence(Qt::Key_F1));
    mnuLevelIncreaseWidth =
        addItem(mnuLevel, "mnuLevelIncreaseWidth", QStringLiteral("Increase Width"),
                &frmMain::mnuLevelIncreaseWidth_Click, QKeySequence(Qt::Key_F2));
    mnuLevelDecreaseHeight =
        addItem(mnuLevel, "mnuLevelDecreaseHeight", QStringLiteral("Decrease Height"),
                &frmMain::mnuLevelDecreaseHeight_Click, QKeySequence(Qt::Key_F3));
    mnuLevelIncreaseHeight =
        addItem(mnuLevel, "mnuLevelIncreaseHeight", QStringLiteral("Increase Height"),
                &frmMain::mnuLevelIncreaseHeight_Click, QKeySequence(Qt::Key_F4));
    addSeparator(mnuLevel, "mnuLevelBar1");
    mnuLevelRemove = addItem(mnuLevel, "mnuLevelRemove", QStringLiteral("&Remove a Level"),
                             &frmMain::mnuLevelRemove_Click, QKeySequence(Qt::Key_F5));
    mnuLevelAdd = addItem(mnuLevel, "mnuLevelAdd", QStringLiteral("&Add a Level"),
                          &frmMain::mnuLevelAdd_Click, QKeySequence(Qt::Key_F6));
    mnuLevelPrevious = addItem(mnuLevel, "mnuLevelPrevious", QStringLiteral("&Previous"),
                               &frmMain::mnuLevelPrevious_Click, QKeySequence(Qt::Key_F7));
    mnuLevelNext = addItem(mnuLevel, "mnuLevelNext", QStringLiteral("&Next"),
                           &frmMain::mnuLevelNext_Click, QKeySequence(Qt::Key_F8));

    mnuTools = addMenu(bar, "mnuTools", QStringLiteral("&Tools"));
    mnuToolsMouse = mnuTools->addMenu(QStringLiteral("Right &Mouse Button"));
    mnuToolsMouse->setObjectName(QStringLiteral("mnuToolsMouse"));
    mnuToolsMouse->menuAction()->setObjectName(QStringLiteral("mnuToolsMouse"));
    const QString modes[] = {QStringLiteral("Set &Positions"), QStringLiteral("Random &Wall Tile"),
                             QStringLiteral("Random &Inside Tile"),
                             QStringLiteral("Random &Outside Tile")};
    for (std::int16_t index = 0; index < std::int16_t(mnuToolsMouseChoice.size()); ++index) {
        QAction *item = mnuToolsMouse->addAction(modes[index]);
        item->setObjectName(QStringLiteral("mnuToolsMouseChoice%1").arg(index));
        item->setCheckable(true);
        connect(item, &QAction::triggered, this, [this, item, index](bool checked) {
            undoCheckFlip(item, checked);
            mnuToolsMouseChoice_Click(index);
        });
        mnuToolsMouseChoice[index] = item;
    }
    mnuToolsMouseChoice[0]->setChecked(true);
    addSeparator(mnuTools, "mnuToolsBar1");
    mnuToolsSetFloor =
        addItem(mnuTools, "mnuToolsSetFloor", QStringLiteral("Set &Floor"),
                &frmMain::mnuToolsSetFloor_Click, QKeySequence(Qt::CTRL | Qt::Key_F));
    addSeparator(mnuTools, "mnuToolsBar2");
    mnuToolsEnemies = addItem(mnuTools, "mnuToolsEnemies", QStringLiteral("Count &Enemies"),
                              &frmMain::mnuToolsEnemies_Click, QKeySequence(Qt::CTRL | Qt::Key_E));
    mnuToolsPickups = addItem(mnuTools, "mnuToolsPickups", QStringLiteral("Count &Pick-ups"),
                              &frmMain::mnuToolsPickups_Click, QKeySequence(Qt::CTRL | Qt::Key_P));
    mnuToolsDoors = addItem(mnuTools, "mnuToolsDoors", QStringLiteral("Count &Doors"),
                            &frmMain::mnuToolsDoors_Click, QKeySequence(Qt::CTRL | Qt::Key_D));

    mnuHelp = addMenu(bar, "mnuHelp", QStringLiteral("&Help"));
    mnuHelpAbout = addItem(mnuHelp, "mnuHelpAbout", QStringLiteral("&About "),
                           &frmMain::mnuHelpAbout_Click, QKeySequence(Qt::Key_F12));
}

// A text field claims the keys its platform binds to editing before any shortcut sees them (on
// X11 Ctrl+E moves to the end of the line). Every control of the window refuses the keys that a
// menu item owns (frmMain::eventFilter), so that the item runs whichever control has the focus.
void frmMain::giveMenuKeysToTheMenus() {
    for (QWidget *control : client->findChildren<QWidget *>())
        if (control->focusPolicy() != Qt::NoFocus)
            control->installEventFilter(this);
}

bool frmMain::menuOwns(const QKeyEvent &key) const {
    const QKeySequence pressed(key.keyCombination());
    for (const QAction *item : findChildren<QAction *>())
        if (item->shortcuts().contains(pressed))
            return true;
    return false;
}

// Never on the menu bar: the editing handlers open them under the mouse.
void frmMain::createPopupMenus() {
    mnuTilePopUp = new QMenu(QStringLiteral("Tile PopUp"), this);
    mnuTilePopUp->setObjectName(QStringLiteral("mnuTilePopUp"));
    mnuTilePopUpPut =
        addItem(mnuTilePopUp, "mnuTilePopUpPut", QStringLiteral("Set as Block to &Put Type"),
                &frmMain::mnuTilePopUpPut_Click);
    mnuTilePopUpTake =
        addItem(mnuTilePopUp, "mnuTilePopUpTake", QStringLiteral("Set as Block to &Take Type"),
                &frmMain::mnuTilePopUpTake_Click);

    mnuLevelPopUp = new QMenu(QStringLiteral("Level PopUp"), this);
    mnuLevelPopUp->setObjectName(QStringLiteral("mnuLevelPopUp"));
    mnuLevelPopUpStart =
        addItem(mnuLevelPopUp, "mnuLevelPopUpStart", QStringLiteral("Set as &Start Position"),
                &frmMain::mnuLevelPopUpStart_Click);
    mnuLevelPopUpFinish =
        addItem(mnuLevelPopUp, "mnuLevelPopUpFinish", QStringLiteral("Set as &Finish Position"),
                &frmMain::mnuLevelPopUpFinish_Click);
    addSeparator(mnuLevelPopUp, "mnuLevelPopUpBar1");
    mnuLevelPopUpPut =
        addItem(mnuLevelPopUp, "mnuLevelPopUpPut", QStringLiteral("Set as Block to &Put Position"),
                &frmMain::mnuLevelPopUpPut_Click);
    mnuLevelPopUpTake = addItem(mnuLevelPopUp, "mnuLevelPopUpTake",
                                QStringLiteral("Set as Block to &Take Position"),
                                &frmMain::mnuLevelPopUpTake_Click);
}

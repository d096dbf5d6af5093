#include "shell/frmMain.h"

#include <QBitmap>
#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

// The toolbar across the top of the client area and the status bar across its bottom.

namespace {

// The buttons left to right. The key names the button and its picture in the image list, and
// a click runs the handler of the menu item whose command the button offers.
struct ToolbarButton {
    const char *key; // null for a separator
    const char *tooltip;
    void (frmMain::*handler)();
};

constexpr ToolbarButton Buttons[] = {
    {"New", "New Levelset", &frmMain::mnuFileNew_Click},
    {"Open", "Open", &frmMain::mnuFileOpen_Click},
    {"Save", "Save", &frmMain::mnuFileSave_Click},
    {nullptr, nullptr, nullptr},
    {"DWidth", "Decrease Width", &frmMain::mnuLevelDecreaseWidth_Click},
    {"IWidth", "Increase Width", &frmMain::mnuLevelIncreaseWidth_Click},
    {"DHeight", "Decrease Height", &frmMain::mnuLevelDecreaseHeight_Click},
    {"IHeight", "Increase Height", &frmMain::mnuLevelIncreaseHeight_Click},
    {nullptr, nullptr, nullptr},
    {"AddLevel", "Add a Level", &frmMain::mnuLevelAdd_Click},
    {"RemoveLevel", "Remove a Level", &frmMain::mnuLevelRemove_Click},
    {"PreviousLevel", "Go to Previous Level", &frmMain::mnuLevelPrevious_Click},
    {"NextLevel", "Go to Next Level", &frmMain::mnuLevelNext_Click},
    {nullptr, nullptr, nullptr},
    {"About", "About", &frmMain::mnuHelpAbout_Click},
};

constexpr QSize ButtonSize(23, 22);
constexpr int PanelMinimumWidth = 96;

// The toolbar pictures mark their transparent pixels with the colour (192, 192, 192).
QIcon toolbarIcon(const QString &key) {
    QPixmap picture(QStringLiteral(":/images/toolbar/%1.png").arg(key));
    if (!picture.isNull())
        picture.setMask(picture.createMaskFromColor(QColor(192, 192, 192)));
    return QIcon(picture);
}

QLabel *clockPanel(const QString &name, QStatusBar *bar) {
    auto *panel = new QLabel(bar);
    panel->setObjectName(name);
    panel->setMinimumWidth(PanelMinimumWidth);
    panel->setAlignment(Qt::AlignCenter);
    bar->addPermanentWidget(panel);
    return panel;
}

} // namespace

void frmMain::createToolbar() {
    tbToolBar = new QToolBar(client);
    tbToolBar->setObjectName(QStringLiteral("tbToolBar"));
    tbToolBar->setMovable(false);
    tbToolBar->setFloatable(false);
    tbToolBar->setIconSize(QSize(16, 16));
    tbToolBar->setGeometry(0, 0, client->width(), 28);

    for (const ToolbarButton &button : Buttons) {
        if (!button.key) {
            tbToolBar->addSeparator();
            continue;
        }
        const QString key = QLatin1StringView(button.key);
        QAction *action = tbToolBar->addAction(toolbarIcon(key), QString());
        action->setObjectName(key);
        action->setData(key);
        action->setToolTip(QLatin1StringView(button.tooltip));
        tbToolBar->widgetForAction(action)->setFixedSize(ButtonSize);
    }
    connect(tbToolBar, &QToolBar::actionTriggered, this,
            [this](QAction *action) { tbToolBar_ButtonClick(action->data().toString()); });
}

// Compares the key exactly, case included, with the table's keys in order.
void frmMain::tbToolBar_ButtonClick(const QString &key) {
    for (const ToolbarButton &button : Buttons) {
        if (button.key && key == QLatin1StringView(button.key)) {
            (this->*button.handler)();
            return;
        }
    }
}

void frmMain::createStatusBar() {
    sbStatusBar = new QStatusBar(client);
    sbStatusBar->setObjectName(QStringLiteral("sbStatusBar"));
    sbStatusBar->setSizeGripEnabled(false);
    sbStatusBar->setGeometry(0, client->height() - 18, client->width(), 18);

    statusText = new QLabel(QStringLiteral("Status"), sbStatusBar);
    statusText->setObjectName(QStringLiteral("statusText"));
    sbStatusBar->addWidget(statusText, 1);
    statusDate_ = clockPanel(QStringLiteral("statusDate"), sbStatusBar);
    statusTime_ = clockPanel(QStringLiteral("statusTime"), sbStatusBar);

    auto *clock = new QTimer(this);
    connect(clock, &QTimer::timeout, this, &frmMain::updateClock);
    clock->start(1000);
    updateClock();
}

void frmMain::updateClock() {
    const QDateTime now = QDateTime::currentDateTime();
    const QLocale locale;
    statusDate_->setText(locale.toString(now.date(), QLocale::ShortFormat));
    statusTime_->setText(locale.toString(now.time(), QLocale::ShortFormat));
}

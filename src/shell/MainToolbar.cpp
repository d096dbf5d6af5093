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

struct ToolbarButton {
    const char *key; // null for a separator
    const char *tooltip;
};

constexpr ToolbarButton Buttons[] = {
    {"New", "New Levelset"},
    {"Open", "Open"},
    {"Save", "Save"},
    {nullptr, nullptr},
    {"DWidth", "Decrease Width"},
    {"IWidth", "Increase Width"},
    {"DHeight", "Decrease Height"},
    {"IHeight", "Increase Height"},
    {nullptr, nullptr},
    {"AddLevel", "Add a Level"},
    {"RemoveLevel", "Remove a Level"},
    {"PreviousLevel", "Go to Previous Level"},
    {"NextLevel", "Go to Next Level"},
    {nullptr, nullptr},
    {"About", "About"},
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

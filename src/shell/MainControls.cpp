#include "levels/PropertiesPanel.h"
#include "shell/frmMain.h"
#include "view/LevelView.h"
#include "view/Marker.h"
#include "view/TilePalette.h"
#include "view/TilesetPicture.h"

#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

// The client area and the controls on it, each at its place in client coordinates.

namespace {

constexpr QSize ClientSize(803, 572);
constexpr int BorderWidth = 2;

// The sunken 2-pixel border that surrounds a picture surface; the surface sits inside it.
QFrame *sunkenBorder(const QString &name, const QRect &outside, QWidget *client) {
    auto *border = new QFrame(client);
    border->setObjectName(name);
    border->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    border->setLineWidth(BorderWidth);
    border->setGeometry(outside);
    return border;
}

QRect inside(const QFrame *border) {
    return QRect(QPoint(BorderWidth, BorderWidth),
                 border->size() - QSize(2 * BorderWidth, 2 * BorderWidth));
}

} // namespace

void frmMain::createControls() {
    client = new QWidget(this);
    client->setObjectName(QStringLiteral("client"));
    client->setFixedSize(ClientSize);
    setCentralWidget(client);

    lblLevelNum = new QLabel(client);
    lblLevelNum->setObjectName(QStringLiteral("lblLevelNum"));
    lblLevelNum->setAlignment(Qt::AlignCenter);
    lblLevelNum->setGeometry(8, 40, 113, 17);

    QFrame *levelBorder =
        sunkenBorder(QStringLiteral("picLevelBorder"), QRect(136, 32, 516, 516), client);
    // The one tileset image, from which the level view and the palette draw.
    picTileset = new TilesetPicture(client);
    picTileset->setObjectName(QStringLiteral("picTileset"));
    picTileset->setGeometry(ClientSize.width() + 8, 32, 132, 516);

    picLevel = new LevelView(levelBorder);
    picLevel->setObjectName(QStringLiteral("picLevel"));
    picLevel->setGeometry(inside(levelBorder));
    picLevel->setFocusPolicy(Qt::StrongFocus);

    QFrame *tilesBorder =
        sunkenBorder(QStringLiteral("picTilesBorder"), QRect(664, 32, 132, 516), client);
    picTiles = new TilePalette(picTileset->image(), tilesBorder);
    picTiles->setObjectName(QStringLiteral("picTiles"));
    picTiles->setGeometry(inside(tilesBorder));
    picTiles->setFocusPolicy(Qt::StrongFocus);

    panel = new PropertiesPanel(levelset, dialogs(), client);

    setTabOrder(picLevel, picTiles);
    setTabOrder(picTiles, panel->optNormal);
    setTabOrder(panel->optNormal, panel->optHatchery);
    setTabOrder(panel->optHatchery, panel->optWeak);
    setTabOrder(panel->optWeak, panel->optStrong);
    setTabOrder(panel->optStrong, panel->txtPasscode);
    setTabOrder(panel->txtPasscode, panel->txtObjectives);
    setTabOrder(panel->txtObjectives, panel->txtTime);

    connect(picLevel, &LevelView::mouseDown, this, &frmMain::picLevel_MouseDown);
    connect(picLevel, &LevelView::mouseMove, this, &frmMain::picLevel_MouseMove);
    connect(picTiles, &TilePalette::mouseDown, this, &frmMain::picTiles_MouseDown);
}

void frmMain::createMarkers() {
    levelCursor = new Marker(QStringLiteral("levelCursor"), QColor(255, 128, 0), picLevel);
    shpStart = new Marker(QStringLiteral("shpStart"), QColor(128, 255, 128), picLevel);
    shpFinish = new Marker(QStringLiteral("shpFinish"), QColor(0, 192, 0), picLevel);
    shpPut = new Marker(QStringLiteral("shpPut"), QColor(128, 128, 255), picLevel);
    shpTake = new Marker(QStringLiteral("shpTake"), QColor(0, 0, 192), picLevel);
    tileCursor = new Marker(QStringLiteral("tileCursor"), QColor(255, 128, 0), picTiles);
    shpPutType = new Marker(QStringLiteral("shpPutType"), QColor(128, 128, 255), picTiles);
    shpTakeType = new Marker(QStringLiteral("shpTakeType"), QColor(0, 0, 192), picTiles);

    levelCursor->place(QPoint(0, 0));
    tileCursor->place(QPoint(0, 0));
    // The cursors are drawn above the other markers, so the cell under the mouse and the
    // selected tile stay visible when a position or type marker shares their square.
    levelCursor->raise();
    tileCursor->raise();
    // The block markers start hidden, as their View items start unchecked.
    for (Marker *hidden : {shpPut, shpTake, shpPutType, shpTakeType})
        hidden->hide();
}

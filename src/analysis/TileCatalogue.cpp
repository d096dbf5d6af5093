#include "analysis/TileCatalogue.h"

#include <algorithm>

const TileKind *tileKind(int id) {
    const auto *kind =
        std::find_if(TileCatalogue.begin(), TileCatalogue.end(),
                     [id](const TileKind &k) { return id >= k.first && id <= k.last; });
    return kind == TileCatalogue.end() ? nullptr : kind;
}

QString tileName(int id) {
    const TileKind *kind = tileKind(id);
    return kind ? QString::fromLatin1(kind->name) : QString();
}

QString tileShortName(int id) {
    const TileKind *kind = tileKind(id);
    return kind ? QString::fromLatin1(kind->shortName ? kind->shortName : kind->name) : QString();
}

TileGroup tileGroup(int id) {
    const TileKind *kind = tileKind(id);
    return kind ? kind->group : TileGroup::None;
}

#pragma once

#include <QByteArrayView>
#include <QString>

// How replaceFile ended.
struct ReplaceResult {
    QString failure;      // the system's reason ("No space left on device"); empty on success
    bool inPlace = false; // the folder takes no new file, so the old file's bytes were
                          // overwritten directly (and put back had that failed)

    bool ok() const { return failure.isEmpty(); }
};

// Makes the file at path hold exactly bytes, or leaves it byte-identical and says why not.
//
// The bytes go to a new file beside the target, which is flushed, synced and given the old
// file's permissions before it is renamed over the target, so a full disk, a quota or a file
// size limit fails the save instead of cutting the file short. A failure at any stage removes
// the new file again. A symbolic link is kept and the file it leads to is replaced. When the
// folder refuses a new file but the target itself is writable, the target is rewritten in
// place; its old bytes are read first and written back if that fails.
ReplaceResult replaceFile(const QString &path, QByteArrayView bytes);

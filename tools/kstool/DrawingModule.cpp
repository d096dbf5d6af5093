#include "DrawingModule.h"

#include "CommandLine.h"
#include "Commands.h"

#include <QFile>
#include <QFileInfo>
#include <dlfcn.h>

namespace {

QString loadError;

// The module stands beside kstool in the build tree, and in a folder of its own under the
// library folder once installed.
const DrawingModule *load() {
    const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    for (const QString &path :
         {folder + QStringLiteral("/kstool-draw.so"),
          folder + QStringLiteral("/" KSTOOL_MODULE_FROM_BIN "/kstool-draw.so")}) {
        void *handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            loadError = QString::fromLocal8Bit(dlerror());
            continue;
        }
        const auto entry =
            reinterpret_cast<DrawingModuleEntryFunction>(dlsym(handle, DrawingModuleEntry));
        if (entry)
            return entry();
        loadError = QString::fromLocal8Bit(dlerror());
    }
    return nullptr;
}

const DrawingModule *drawing() {
    static const DrawingModule *module = load();
    return module;
}

QString missingModule() {
    return QStringLiteral("cannot draw: the module kstool-draw.so cannot be loaded (%1)")
        .arg(loadError);
}

} // namespace

int runRender(const QStringList &arguments) {
    return drawing() ? drawing()->render(arguments) : fail(InputProblem, missingModule());
}

int runSheet(const QStringList &arguments) {
    return drawing() ? drawing()->sheet(arguments) : fail(InputProblem, missingModule());
}

int runThumbnail(const QStringList &arguments) {
    return drawing() ? drawing()->thumbnail(arguments) : fail(InputProblem, missingModule());
}

QString writeTilesetPng(const QString &path) {
    return drawing() ? drawing()->writeTilesetPng(path) : missingModule();
}

QString writeChangesPicture(const Levelset &shown, const QList<LevelChanges> &levels, int scale,
                            const QString &path) {
    return drawing() ? drawing()->writeChangesPicture(shown, levels, scale, path) : missingModule();
}

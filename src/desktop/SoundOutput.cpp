// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SoundOutput.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QStringList>

CSoundChoice FindSoundOutput() {
    using Make = ISoundOutput* (*)(char const*);
    QString const name = QStringLiteral("/tactus-sound.so");
    QString const folder = QCoreApplication::applicationDirPath();
    for (QString const& path :
         {folder + name, folder + QStringLiteral("/" TACTUS_PARTS_FROM_PROGRAMS) + name}) {
        if (!QFile::exists(path)) {
            continue;
        }
        QLibrary part(path);
        auto const make = reinterpret_cast<Make>(part.resolve("TactusMakeSoundOutput"));
        std::unique_ptr<ISoundOutput> output(make != nullptr ? make(TACTUS_VERSION) : nullptr);
        if (output == nullptr) {
            continue;
        }
        return output->rate() > 0 ? CSoundChoice{std::move(output), ESoundProblem::None}
                                  : CSoundChoice{nullptr, ESoundProblem::NoDevice};
    }
    return {nullptr, ESoundProblem::NoPart};
}

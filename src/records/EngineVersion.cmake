# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
#
# Writes OUTPUT, which tells the digest of the archives LIBRARIES: any change of what is compiled
# into them, and no other, is another engine.
set(digests "")
foreach(library ${LIBRARIES})
    file(SHA256 ${library} digest)
    string(APPEND digests ${digest})
endforeach()
string(SHA256 digest "${digests}")
string(SUBSTRING ${digest} 0 32 digest)
file(WRITE ${OUTPUT} "#include \"records/EngineVersion.h\"
#include \"platform/AudioSetup.h\"

std::string EngineVersion() {
    return \"${digest} \" + DecoderVersion();
}
")

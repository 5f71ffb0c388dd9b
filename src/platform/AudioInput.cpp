// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioInput.h"

#include "platform/ReadKinds.h"

namespace {

constexpr char kProtocols[] = "file"; // Fixed: no network, no lists.
constexpr int kReadBlock = 65536;     // Tuned: bench/whole_file.sh.

} // namespace

int CAudioInput::Open(std::string const& path, bool ignoreEdits) {
    auto* const block = static_cast<unsigned char*>(Had(av_malloc(kReadBlock)));
    m_io.reset(avio_alloc_context(block, kReadBlock, 0, this, Read, nullptr, Seek));
    AVFormatContext* format = Had(avformat_alloc_context());
    format->pb = Had(m_io.get());
    format->io_open = [](AVFormatContext*, AVIOContext**, char const*, int, AVDictionary**) {
        return AVERROR(EPERM);
    };
    format->interrupt_callback = {
        [](void* watch) { return static_cast<CDecodeWatch*>(watch)->MustEnd() ? 1 : 0; }, &m_watch};
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", FormatList().c_str(), 0);
    av_dict_set(&options, "codec_whitelist", DecoderList().c_str(), 0);
    av_dict_set(&options, "protocol_whitelist", kProtocols, 0);
    av_dict_set(&options, "ignore_editlist", ignoreEdits ? "1" : "0", 0);
    // The name serves the guess at the format; with its prefix no part of it is a protocol.
    std::string const name = "file:" + path;
    (void)m_source.Seek(0);
    int const status = avformat_open_input(&format, name.c_str(), nullptr, &options);
    av_dict_free(&options);
    m_format.reset(format);
    if (GetContainer() == EContainer::MpegAudio) {
        // Reading an MP3's header leaves a checksum running over all that follows, for which nobody
        // asks: 3 % of the decoding.
        m_io->update_checksum = nullptr;
    }
    return status;
}

EContainer CAudioInput::GetContainer() const {
    return m_format != nullptr ? ContainerOf(m_format->iformat->name) : EContainer::Unknown;
}

int CAudioInput::Read(void* self, std::uint8_t* buffer, int size) {
    auto& [source, watch, io, format] = *static_cast<CAudioInput*>(self);
    if (watch.MustEnd()) {
        return AVERROR_EXIT;
    }
    auto const done = static_cast<int>(source.Read(buffer, static_cast<std::size_t>(size)));
    watch.NoteRead(done);
    return done < 0 ? AVERROR(EIO) : done == 0 ? AVERROR_EOF : done;
}

std::int64_t CAudioInput::Seek(void* self, std::int64_t offset, int whence) {
    CSourceFile& source = static_cast<CAudioInput*>(self)->m_source;
    return whence == AVSEEK_SIZE ? source.GetSize() : source.Seek(offset);
}

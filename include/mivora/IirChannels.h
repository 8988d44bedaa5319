// Mivora: up to 16 channels of IirProcess filters, processed together.
//
// An IirChannels holds one IirProcess per channel and runs the channels side
// by side, one per lane of the CPU's vector registers, so that many channels
// cost little more than one. Each channel is an ordinary IirProcess: design
// it, reset it, query it through channel(c) with every operation of
// <mivora/IirProcess.h>. Channels may hold different designs and orders.
//
// The promise: channel c's output samples and final state are bit for bit
// those that channel(c) would give processing channel c alone with
// doProcess, whatever the designs, states, block sizes and samples (signed
// zeros, subnormals, infinities included; a NaN stays a NaN).
//
// Like IirProcess: no allocation (the object owns its storage and is
// trivially copyable), no locks, no exceptions; one thread at a time per
// object; results bit-exact given the default floating-point environment.
#ifndef MIVORA_IIRCHANNELS_H
#define MIVORA_IIRCHANNELS_H

#include <cstddef>
#include <cstdint>

#include "IirProcess.h"
#include "export.h"  // MIVORA_API

namespace Mivora {

namespace detail {
struct ChannelView;
}

class IirChannels {
public:
    // Most channels one object holds.
    static constexpr int maxChannels = 16;

    // channels (clamped into [0, maxChannels]) processed channels, each an
    // IirProcess as default-constructed: order 2, silent until designed.
    MIVORA_API explicit IirChannels(int channels) noexcept;
    // Releases nothing.
    ~IirChannels() = default;

    // Bytes an IirChannels needs; place it in memory aligned to
    // alignof(IirChannels). Callable before any object exists.
    MIVORA_API static std::size_t CalculateWorkSize() noexcept;

    // Number of channels processed: the first `channels` of the object's
    // maxChannels filters. setChannels clamps into [0, maxChannels] and
    // keeps every filter's design and state, processed or not.
    MIVORA_API void setChannels(int channels) noexcept;
    int getChannels() const noexcept { return count; }

    // The filter of channel c (clamped into [0, maxChannels - 1]), to design,
    // reset (clearDelay, setDelay) or query as any IirProcess.
    IirProcess& channel(int c) noexcept { return filters[clampChannel(c)]; }
    const IirProcess& channel(int c) const noexcept { return filters[clampChannel(c)]; }

    // design(filter) for each processed channel in turn: the same design for
    // all, e.g.
    //   ch.forEachChannel([](Mivora::IirProcess& f) { f.setCoefHPF(4, 80.0, 48000.0); });
    template <class Design>
    void forEachChannel(Design&& design) {
        for (int c = 0; c < count; ++c) design(filters[c]);
    }

    // ---- Processing -------------------------------------------------------
    // Both layouts filter `frames` samples of every processed channel in
    // double precision, as IirProcess::doProcess does, and carry the state
    // from call to call: blocks may be of any size. frames 0 or no channels
    // touch nothing.

    // Planar: in[c] and out[c] point to `frames` floats of channel c, for c
    // below getChannels(). out[c] may equal in[c] (in place); no other
    // overlap between the buffers.
    MIVORA_API void processPlanar(const float* const* in, float* const* out, unsigned int frames) noexcept;
    // Interleaved: frames of getChannels() floats, channel c at index c of
    // each frame (frames * getChannels() floats in all). out may equal in
    // (in place); no other overlap.
    MIVORA_API void processInterleaved(const float* in, float* out, unsigned int frames) noexcept;

private:
    static int clampChannel(int c) noexcept { return c < 0 ? 0 : c >= maxChannels ? maxChannels - 1 : c; }
    // Each processed channel's filter storage and the stages it runs.
    void channelViews(detail::ChannelView* views) noexcept;

    IirProcess filters[maxChannels];
    std::int32_t count;
};

}  // namespace Mivora

#endif  // MIVORA_IIRCHANNELS_H

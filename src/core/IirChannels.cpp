// The multichannel object: its channels' filters, and processing them
// together through the channel kernels.
#include <mivora/IirChannels.h>

#include <algorithm>
#include <cstddef>

#include "channel_paths.hpp"
#include "section_kernels.hpp"

namespace Mivora {

namespace {

int clampCount(int channels) noexcept { return std::clamp(channels, 0, IirChannels::maxChannels); }

}  // namespace

IirChannels::IirChannels(int channels) noexcept : filters{}, count(clampCount(channels)) {}

std::size_t IirChannels::CalculateWorkSize() noexcept { return sizeof(IirChannels); }

void IirChannels::setChannels(int channels) noexcept { count = clampCount(channels); }

void IirChannels::channelViews(detail::ChannelView* views) noexcept {
    // The kernels reach a filter's arrays from its first one.
    static_assert(offsetof(IirProcess, coef) - offsetof(IirProcess, delay) ==
                          detail::ChannelView::coefAt * sizeof(double) &&
                      offsetof(IirProcess, delay1st) - offsetof(IirProcess, delay) ==
                          detail::ChannelView::delay1stAt * sizeof(double) &&
                      offsetof(IirProcess, coef1st) - offsetof(IirProcess, delay) ==
                          detail::ChannelView::coef1stAt * sizeof(double),
                  "IirProcess keeps delay, coef, delay1st and coef1st side by side");
    // The stages doProcess would run for each filter's order.
    for (int c = 0; c < count; ++c) {
        IirProcess& f = filters[c];
        views[c] = {f.delay, detail::stageSet(detail::runningSections(f.evenOrder), f.oddOrder != 0)};
    }
}

// One channel has nothing to share its registers with: the single-channel
// kernels, which overlap that channel's samples instead, do it faster.
void IirChannels::processPlanar(const float* const* in, float* const* out, unsigned int frames) noexcept {
    if (frames == 0 || count == 0) return;
    if (count == 1) return filters[0].doProcess(const_cast<float*>(in[0]), out[0], frames);
    detail::ChannelView views[maxChannels];
    channelViews(views);
    detail::processPlanar(detail::fastestChannelPath(), views, count, in, out, frames);
}

void IirChannels::processInterleaved(const float* in, float* out, unsigned int frames) noexcept {
    if (frames == 0 || count == 0) return;
    // doProcess only reads `in`.
    if (count == 1) return filters[0].doProcess(const_cast<float*>(in), out, frames);
    detail::ChannelView views[maxChannels];
    channelViews(views);
    detail::processInterleaved(detail::fastestChannelPath(), views, count, in, out, frames);
}

}  // namespace Mivora

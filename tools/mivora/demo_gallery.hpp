// What the demo shows: response plots of representative designs, and the
// filters a generated sweep is run through. Each design is written as the
// command-line words a user would type after `mivora response`.
#ifndef MIVORA_TOOL_DEMO_GALLERY_HPP
#define MIVORA_TOOL_DEMO_GALLERY_HPP

#include <vector>

namespace mivora_tool {

struct GalleryCurve {
    const char* legend;
    const char* design;  // "lowpass --order 4 --freq 1000"
};

struct GalleryPlot {
    const char* file;   // SVG name, without extension
    const char* title;
    std::vector<GalleryCurve> curves;
};

struct GallerySound {
    const char* file;   // WAV name, without extension
    const char* title;
    const char* design;
};

const std::vector<GalleryPlot>& galleryPlots();
const std::vector<GallerySound>& gallerySounds();

}  // namespace mivora_tool

#endif

#include "demo_gallery.hpp"

namespace mivora_tool {

const std::vector<GalleryPlot>& galleryPlots() {
    static const std::vector<GalleryPlot> plots = {
        {"peak", "Peaking EQ at 1 kHz, Q 1.4: which quadratic carries the Q",
         {{"+12 dB, Q on the poles", "peak --freq 1000 --gain 12 --q 1.4"},
          {"+12 dB, Q on the zeros", "peak --variant cq --freq 1000 --gain 12 --q 1.4"},
          {"-12 dB, Q on the poles", "peak --freq 1000 --gain -12 --q 1.4"}}},
        {"lowshelf", "Low shelves, +9 dB at 300 Hz",
         {{"1st order A", "lowshelf --order 1 --variant A --freq 300 --gain 9"},
          {"1st order B", "lowshelf --order 1 --variant B --freq 300 --gain 9"},
          {"2nd order A", "lowshelf --order 2 --variant A --freq 300 --gain 9"},
          {"2nd order B", "lowshelf --order 2 --variant B --freq 300 --gain 9"},
          {"2nd order B, damping 2", "lowshelf --order 2 --variant B --damping 2 --freq 300 --gain 9"}}},
        {"highshelf", "High shelves, -9 dB at 3 kHz",
         {{"1st order A", "highshelf --order 1 --variant A --freq 3000 --gain -9"},
          {"1st order B", "highshelf --order 1 --variant B --freq 3000 --gain -9"},
          {"2nd order A", "highshelf --order 2 --variant A --freq 3000 --gain -9"},
          {"2nd order B", "highshelf --order 2 --variant B --freq 3000 --gain -9"},
          {"2nd order A, damping 2", "highshelf --order 2 --variant A --damping 2 --freq 3000 --gain -9"}}},
        {"corner-shelf", "Second-order low shelf, +12 dB, 200 Hz placed by weight (level -3 dB)",
         {{"weight 0", "lowshelf --order 2 --freq 200 --gain 12 --weight 0 --level -3"},
          {"weight 0.5", "lowshelf --order 2 --freq 200 --gain 12 --weight 0.5 --level -3"},
          {"weight 1", "lowshelf --order 2 --freq 200 --gain 12 --weight 1 --level -3"}}},
        {"lowpass-butter", "Butterworth low-pass at 1 kHz, orders 1 to 5",
         {{"order 1", "lowpass --order 1 --freq 1000"},
          {"order 2", "lowpass --order 2 --freq 1000"},
          {"order 3", "lowpass --order 3 --freq 1000"},
          {"order 4", "lowpass --order 4 --freq 1000"},
          {"order 5", "lowpass --order 5 --freq 1000"}}},
        {"lowpass-cheby", "Chebyshev low-pass at 1 kHz, 1 dB ripple, orders 2 to 5",
         {{"order 2", "lowpass --type cheby --order 2 --freq 1000 --ripple 1"},
          {"order 3", "lowpass --type cheby --order 3 --freq 1000 --ripple 1"},
          {"order 4", "lowpass --type cheby --order 4 --freq 1000 --ripple 1"},
          {"order 5", "lowpass --type cheby --order 5 --freq 1000 --ripple 1"}}},
        {"lowpass-icheby", "Inverse Chebyshev low-pass, stop band from 2 kHz at -60 dB, orders 2 to 5",
         {{"order 2", "lowpass --type icheby --order 2 --freq 2000 --stop-level 360"},
          {"order 3", "lowpass --type icheby --order 3 --freq 2000 --stop-level 360"},
          {"order 4", "lowpass --type icheby --order 4 --freq 2000 --stop-level 360"},
          {"order 5", "lowpass --type icheby --order 5 --freq 2000 --stop-level 360"}}},
        {"highpass", "High-pass at 200 Hz, fourth order: the three families side by side",
         {{"Butterworth", "highpass --order 4 --freq 200"},
          {"Chebyshev, 0.5 dB", "highpass --type cheby --order 4 --freq 200 --ripple 0.5"},
          {"inverse Chebyshev, -60 dB", "highpass --type icheby --order 4 --freq 200 --stop-level 360"}}},
        {"q-sections", "Second-order low-pass at 2 kHz with Q",
         {{"Q 0.5", "lowpass --type q --freq 2000 --q 0.5"},
          {"Q 0.707", "lowpass --type q --freq 2000 --q 0.7071"},
          {"Q 2", "lowpass --type q --freq 2000 --q 2"},
          {"Q 6", "lowpass --type q --freq 2000 --q 6"}}},
        {"bandpass", "Band-pass 500 Hz to 2 kHz, prototype order 2",
         {{"Butterworth", "bandpass --order 2 --low 500 --high 2000"},
          {"Chebyshev, 1 dB", "bandpass --type cheby --order 2 --low 500 --high 2000 --ripple 1"},
          {"inverse Chebyshev, -50 dB", "bandpass --type icheby --order 2 --low 300 --high 3300 --stop-level 460"}}},
        {"bandpass-q", "Band-pass at 1 kHz with Q, peak at 0 dB",
         {{"Q 0.7", "bandpass --type q0 --freq 1000 --q 0.7"},
          {"Q 2", "bandpass --type q0 --freq 1000 --q 2"},
          {"Q 8", "bandpass --type q0 --freq 1000 --q 8"}}},
        {"bandstop", "Band-stop 700 Hz to 1.4 kHz, prototype order 2",
         {{"Butterworth", "bandstop --order 2 --low 700 --high 1400"},
          {"Chebyshev, 0.5 dB", "bandstop --type cheby --order 2 --low 700 --high 1400 --ripple 0.5"},
          {"inverse Chebyshev, -60 dB", "bandstop --type icheby --order 2 --low 900 --high 1100 --stop-level 360"}}},
        {"allpass", "All-pass sections at 1 kHz: flat magnitude, turning phase",
         {{"1st order", "allpass --order 1 --freq 1000"}, {"2nd order", "allpass --order 2 --freq 1000"}}},
        {"dc-filters", "DC filters: a 20 Hz DC cut and a 5 Hz DC tracker",
         {{"dc-highpass 20 Hz", "dc-highpass --freq 20"}, {"dc-lowpass 5 Hz", "dc-lowpass --freq 5"}}},
    };
    return plots;
}

const std::vector<GallerySound>& gallerySounds() {
    static const std::vector<GallerySound> sounds = {
        {"sweep-lowpass", "Chebyshev low-pass, 4th order, 1 kHz",
         "lowpass --type cheby --order 4 --freq 1000 --ripple 1"},
        {"sweep-highpass", "Butterworth high-pass, 4th order, 1 kHz", "highpass --order 4 --freq 1000"},
        {"sweep-bandpass", "Butterworth band-pass, 500 Hz to 2 kHz", "bandpass --order 2 --low 500 --high 2000"},
        {"sweep-bandstop", "Inverse Chebyshev band-stop around 1 kHz",
         "bandstop --type icheby --order 2 --low 900 --high 1100 --stop-level 360"},
        {"sweep-peak", "Peaking cut, -12 dB at 1 kHz", "peak --freq 1000 --gain -12 --q 2"},
    };
    return sounds;
}

}  // namespace mivora_tool

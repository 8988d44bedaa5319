// The response a filter reports of itself, sampled on a log-spaced grid.
#ifndef MIVORA_TOOL_RESPONSE_TABLE_HPP
#define MIVORA_TOOL_RESPONSE_TABLE_HPP

#include "command_line.hpp"

#include <string>
#include <vector>

namespace mivora_tool {

struct ResponsePoint {
    double freq;
    double powerDb;   // IirProcess::power
    double phaseRad;  // IirProcess::phase: the second-order sections only
};

// `points` frequencies from `from` to `to` (both exactly), evenly spaced
// on a log axis; one point is `from` alone.
std::vector<double> logSpaced(double from, double to, int points);

std::vector<ResponsePoint> sampleResponse(const Mivora::IirProcess& filter, double fs,
                                          const std::vector<double>& freqs);

std::string formatResponse(const Design& design, const std::vector<ResponsePoint>& points, TableFormat format);

}  // namespace mivora_tool

#endif

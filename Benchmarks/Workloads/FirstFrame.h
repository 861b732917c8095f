#pragma once

#include <vector>

namespace bench {

// The program starts itself so many times as a process that shows the gallery, everything linked as a host links it.
// Milliseconds from each start to the first complete frame.
std::vector<double> measureFirstFrames(int runs);

// The started process's part: shows the gallery and prints the milliseconds since that moment.
int showFirstFrame(double startedAt);

} // namespace bench

#pragma once

namespace Varnel::Testing {

/// What this process holds at the moment.
struct ProcessFootprint {
    long residentKB = 0;
    long heapKB = 0; ///< allocated and not freed
    int descriptors = 0;
    int threads = 0;
};

/// Gives free memory back to the system first, so that two measurements can be compared.
ProcessFootprint processFootprint();

} // namespace Varnel::Testing

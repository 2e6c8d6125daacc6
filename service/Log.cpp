#include "service/Log.h"

#include <iostream>
#include <string>

namespace zentri::service {

void logLine(std::string_view text) {
    // One call is one write of the unbuffered stream.
    std::cerr << "zentri-service: " + std::string(text) + '\n';
}

}  // namespace zentri::service

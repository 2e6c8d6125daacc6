#include "service/Log.h"

#include <iostream>
#include <string>

namespace zentri::service {

void logLine(std::string_view text) {
    // std::cerr is unbuffered: a single insertion is a single write.
    std::cerr << "zentri-service: " + std::string(text) + '\n';
}

}  // namespace zentri::service

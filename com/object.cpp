#include "object.h"

namespace velcoran::com {

std::atomic<std::int64_t>& livingObjects() {
    static std::atomic<std::int64_t> count{0};
    return count;
}

}  // namespace velcoran::com

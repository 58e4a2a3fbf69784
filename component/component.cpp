#include "component.h"

namespace velcoran::component {

Component& component() {
    static Component instance;
    return instance;
}

}  // namespace velcoran::component

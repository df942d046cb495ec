// Errors of a shape name its id: a user finds it in the XML by that.
#pragma once

#include <string>

#include "SwfException.h"

namespace libswf {

template <class Act>
void namingShape(uint16_t shapeId, Act act) {
    try {
        act();
    } catch (SwfException& error) {
        error.addPlace("ShapeId " + std::to_string(shapeId));
        throw;
    }
}

} // namespace libswf

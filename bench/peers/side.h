// A library that takes part.
#pragma once

#include <cstdint>
#include <memory>

#include "peers/scene.h"

namespace captionfx::peers {

class Side {
public:
    Side() = default;
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    virtual ~Side() = default;

    /// What a host has ready before the frame is asked for: it is not measured.
    virtual void Prepare(double moment) = 0;

    /// Draws the moment that was prepared onto opaque pixels, blue in the lowest byte.
    virtual void Draw(uint32_t* pixels) = 0;
};

}  // namespace captionfx::peers

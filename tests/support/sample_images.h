#pragma once

#include <memory>

#include "model/configuration.h"
#include "simulator/sample_configuration.h"

namespace korvane::test {

// What a device fresh from the factory answers to a fetch.
inline std::unique_ptr<Configuration> sampleImages() {
    const auto state = sampleState("192.168.1.20");
    auto images = std::make_unique<Configuration>();
    images->channels = sampleChannels();
    images->image = state->set.image;
    fromNetworkOrder(images->image);
    images->descriptions = state->set.descriptions;
    fromNetworkOrder(images->descriptions);
    images->params = state->paramsSet;
    return images;
}

}  // namespace korvane::test

#pragma once

namespace korvane::host {

class Tour;

// The operator edits the sample configuration of a simulated device: what the save then brings
// there, scripts/tour_story.py knows byte by byte.
void editChannels(Tour& tour);
void addServiceChannels(Tour& tour);
void editNetwork(Tour& tour);
void editFrequencyPoints(Tour& tour);
void addNeighbourNetwork(Tour& tour);
void editServiceFrequencies(Tour& tour);
void addCaSystem(Tour& tour);
void editCaSystem(Tour& tour);
void removeCaSystem(Tour& tour);
void lookAtServices(Tour& tour);
void addFrame(Tour& tour);
void addShortTimeFrame(Tour& tour);
void changeNetworkSettings(Tour& tour);
void setOutputParameters(Tour& tour);
// Not part of the configuration: the device takes the file and throws it away.
void upgradeFirmware(Tour& tour);

}  // namespace korvane::host

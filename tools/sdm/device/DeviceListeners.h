// Everybody who hears what passes between a service on a device, its manager and its platform.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "history/HistoryRecorder.h"
#include "host/Device.h"
#include "map/ItemTable.h"
#include "map/Masking.h"
#include "service/CallListeners.h"
#include "service/PlatformWatch.h"
#include "service/WatchedPlatform.h"
#include "transcript/RecordedLog.h"
#include "transcript/Recorder.h"

namespace cli
{

/// The history, the account of outcomes, and a recorder when there is one. Made before the service, destroyed after it.
class DeviceListeners
{
public:
  /// Borrows table, masking and device. The history lies in the folder.
  DeviceListeners(const std::filesystem::path& folder, const ItemTable& table, const Masking& masking,
                  std::uint32_t interfaces, host::Device& device);

  /// Borrows the recorder, which hears everything first from here on. Before `listen`, or not at all.
  void record(transcript::Recorder& recorder, const transcript::Header& header);

  /// The others hear everything from here on.
  void listen();

  /// Closes the recording, so that nobody hears how the service goes.
  void endRecord();

  /// What became of the manager's requests to the platform since the last call.
  PlatformReport takeOutcomes()
  {
    return outcomes.take();
  }
  History& history()
  {
    return events;
  }
  const History& history() const
  {
    return events;
  }
  CallListeners& all()
  {
    return listeners;
  }
  /// The device's platform, with everybody told.
  WatchedPlatform& platform()
  {
    return watched;
  }

private:
  const std::filesystem::path path;
  const ItemTable& items;
  const Masking& masks;
  History events;
  HistoryRecorder historian;
  transcript::Recorder* recorder = nullptr;
  std::unique_ptr<transcript::RecordedLog> recorded;
  PlatformWatch outcomes;
  CallListeners listeners;
  WatchedPlatform watched;
};

} // namespace cli

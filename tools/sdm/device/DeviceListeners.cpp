// The recorder hears a call before the others do, so that a transcript has it even where one of those fails.
#include "DeviceListeners.h"

namespace cli
{

DeviceListeners::DeviceListeners(const std::filesystem::path& folder, const ItemTable& table, const Masking& masking,
                                 std::uint32_t interfaces, host::Device& device)
    : path(folder),
      items(table),
      masks(masking),
      events(folder),
      historian(events, table, masking, interfaces),
      outcomes(table),
      watched(device, listeners)
{
}

void DeviceListeners::record(transcript::Recorder& itsRecorder, const transcript::Header& header)
{
  recorder = &itsRecorder;
  recorder->begin(header, items, masks, path);
  recorded = std::make_unique<transcript::RecordedLog>(*recorder);
  listeners.add(*recorder);
}

void DeviceListeners::listen()
{
  listeners.add(outcomes);
  listeners.add(historian);
}

void DeviceListeners::endRecord()
{
  if (recorder != nullptr)
    recorder->end();
}

} // namespace cli

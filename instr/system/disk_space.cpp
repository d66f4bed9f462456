// The free and the total space of a disk.

#include "platform/files.h"
#include "plugin/instruction.h"

namespace formula {
namespace {

double Divisor(std::int32_t unit) {
  switch (unit) {
    case 1: return 1024.0;
    case 2: return 1048576.0;
    case 3: return 1073741824.0;
    default: return 1.0;
  }
}

}  // namespace

/// Without a disk name, the current folder's disk; zeros where there is no such disk.
struct CDiskSpace final : Instruction<CDiskSpace> {
  static constexpr Definition kDefinition{
      .category = "IO: System",
      .name = "DiskSpace",
      .identifier = "_Nuv_System_CDiskSpace_",
      .help = 460278,
      .description = "Returns the amount of free and total space on specified disk drive",
      .constants =
          {{.type = NUV_PARAM_CHOICE,
            .name = "size units",
            .description = "Select units to report sizes in",
            .choices = {{0, "Bytes"}, {1, "Kilobytes"}, {2, "Megabytes"}, {3, "Gigabytes"}}}},
      .inputs = {Text("disk name", "Report free space on this disk, e.g. C:\\", "C:\\")},
      .results = {Number("free disk space"), Number("total disk space"), Number("percent free")},
  };
  static Status Run(Call& call, const char* disk_name) {
    const auto disk = platform::FindDiskSpace(disk_name);
    double free = 0.0;
    double total = 0.0;
    double percent = 0.0;
    if (disk) {
      const double divisor = Divisor(call.ConstantInteger(0));
      free = static_cast<double>(disk->free) / divisor;
      total = static_cast<double>(disk->total) / divisor;
      percent = free / total * 100.0;
    }
    call.Set(0, free);
    call.Set(1, total);
    return call.Set(2, percent);
  }
};

template struct Instructions<CDiskSpace>;

}  // namespace formula

// The commands that a run has for a SYSTEM hive: which keys to ask for the cache, and what becomes
// of the answers.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "driver/options/cmd_params.h"
#include "hive/reg_clas.h"

namespace ovrik {

/// One question to a hive: the cache of one control set, under its key of XP or of later systems.
struct registry_command {
  std::string key;        ///< "HKLM\System\...", its last part the value's name
  std::string hive_path;  ///< where the hive came from
  std::string title;
};

/// The two commands for the current control set, the XP key first.
std::vector<registry_command> build_shim_commands_current(const std::string& hive_path);

/// Fills `commands` with the two for each control set, the current one first. False: the hive has
/// no control sets, or nothing that tells which is current.
bool build_shim_commands_all(std::vector<registry_command>& commands, const reg_hive& hive,
                             const std::string& hive_path);

/// Runs the commands and writes what they find to `out`. Returns how many found something. A
/// failed write of an extracted value fails `out`.
size_t run_registry_commands(const std::vector<registry_command>& commands, std::ostream& out,
                             const reg_hive& hive, registry_cmd_parameters& options);

}  // namespace ovrik

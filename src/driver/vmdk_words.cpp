#include "driver/vmdk_words.h"

#include "base/clean_text.h"
#include "driver/container_words.h"
#include "sources/host/host_path.h"

namespace ovrik {

namespace {

std::string fault_text(const vmdk_chain& chain) {
  switch (chain.fault) {
    case vmdk_fault::none:
      return "";
    case vmdk_fault::not_opened:
      return clean_text(chain.faulty_file) + " can't be opened\n";
    case vmdk_fault::out_of_memory:
      return "prob creating virtual vmware disk mapping\n";
    case vmdk_fault::own_parent:
      return "Child VMDK CID errors, aborting\n";
    case vmdk_fault::parent_gone:
      return "Child VMDK points to a parent VMDK that doesn't exist, aborting\n";
  }
  return "";
}

/// True if a POSIX shell makes something else of `text` between double quotes.
bool expands_in_quotes(std::string_view text) {
  return text.find_first_of("$`\"!") != std::string_view::npos ||
         text.find("\\\\") != std::string_view::npos || text.ends_with('\\');
}

/// `text` as one argument that is taken literally when it is pasted. On Windows no name of a file
/// needs more than double quotes.
std::string quoted(const std::string& text) {
  const std::string shown = clean_text(text);
  const bool posix = host_separator() == '/';
  if (!posix || !expands_in_quotes(shown)) return '"' + shown + '"';
  std::string literal = "'";
  for (const char c : shown) literal += c == '\'' ? "'\\''" : std::string(1, c);
  return literal + '\'';
}

}  // namespace

std::string vmdk_words(const vmdk_chain& chain) {
  std::string text;
  for (const found_parent& found : chain.found_parents) {
    text += "=> vmdk file: " + clean_text(found.child) + "\n depends on parent vmdk " +
            clean_text(found.hint) + '\n';
  }
  return text + fault_text(chain);
}

std::string vmdk_advice(const vmdk_chain& chain) {
  if (chain.files.empty()) {
    return "no file was named: -vmdk takes the files of the disk, as in -vmdk \"snapshot.vmdk | "
           "base.vmdk\"\n";
  }
  if (!chain.faulty_file.empty()) {
    const container_kind kind = kind_of_container(chain.faulty_file);
    return kind == container_kind::vmdk ? "" : container_advice(kind);
  }
  if (!chain.misfit.empty()) {
    return chain.misfit +
           " builds on another state of its parent than the file that is there has (their CIDs "
           "differ): give the one that it was made from\n";
  }
  if (chain.is_ring) {
    return "each of these files builds on another one of them: the base of the disk is missing\n";
  }
  return "";
}

std::string vmdk_option_text(const vmdk_chain& chain, const char* option_name) {
  std::string list, further;
  for (const std::string& file : chain.files) {
    if (file.find_first_of("|,;") != std::string::npos) {
      further += std::string(" ") + option_name + ' ' + quoted(file);
    } else {
      list += (list.empty() ? "" : " | ") + file;
    }
  }
  return std::string(option_name) + ' ' + quoted(list) + further;
}

}  // namespace ovrik

#include "driver/vmdk_words.h"

#include "driver/container_words.h"

namespace ovrik {

namespace {

std::string fault_text(const vmdk_chain& chain) {
  switch (chain.fault) {
    case vmdk_fault::none:
      return "";
    case vmdk_fault::not_opened:
      return chain.faulty_file + " can't be opened\n";
    case vmdk_fault::out_of_memory:
      return "prob creating virtual vmware disk mapping\n";
    case vmdk_fault::own_parent:
      return "Child VMDK CID errors, aborting\n";
    case vmdk_fault::parent_gone:
      return "Child VMDK points to a parent VMDK that doesn't exist, aborting\n";
  }
  return "";
}

}  // namespace

std::string vmdk_words(const vmdk_chain& chain) {
  std::string text;
  for (const found_parent& found : chain.found_parents) {
    text += "=> vmdk file: " + found.child + "\n depends on parent vmdk " + found.hint + '\n';
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
      further += std::string(" ") + option_name + " \"" + file + '"';
    } else {
      list += (list.empty() ? "" : " | ") + file;
    }
  }
  return std::string(option_name) + " \"" + list + '"' + further;
}

}  // namespace ovrik

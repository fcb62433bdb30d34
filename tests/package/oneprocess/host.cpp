// Bins, loads the plug-ins of the command line and has each of them bin: all must agree.

#include <dlfcn.h>

#include <iostream>

#include "bins.h"

int main(int argc, char** argv) {
  const std::string expected = DescribeBins();
  std::cout << "host: " << expected << '\n';
  bool agree = std::string(MCBinning::GetVersion()) == MCBINNING_VERSION_STRING;
  agree = agree && expected == "status 0, cut at 59.000000, weight 90.000000";
  for (int i = 1; i < argc; ++i) {
    void* const plugin = dlopen(argv[i], RTLD_NOW | RTLD_LOCAL);
    using Describe = void (*)(std::string&);
    const auto describe =
        plugin != nullptr ? reinterpret_cast<Describe>(dlsym(plugin, "Describe")) : nullptr;
    std::string found;
    if (describe != nullptr) {
      describe(found);
    } else {
      found = dlerror();
    }
    std::cout << argv[i] << ": " << found << '\n';
    agree = agree && found == expected;
  }
  // Once more, as loading may have changed what the host is bound to.
  return agree && DescribeBins() == expected ? 0 : 1;
}

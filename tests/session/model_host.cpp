// A host library that holds a model of its own, as another host's does: the database that the environment variable
// HOST_MODEL names. It has the export written to HOST_OUTPUT.

#include "headless_host/headless_host.hpp"
#include "model_store/model_store.hpp"

#include <cstdlib>

namespace velm {
namespace {

const bool attached = [] {
    static const Model model = load_model(std::getenv("HOST_MODEL"));
    static HeadlessHost host(model, std::getenv("HOST_OUTPUT"));
    velm_host_attach(&HeadlessHost::answer, &host);
    return true;
}();

} // namespace
} // namespace velm

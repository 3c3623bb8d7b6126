// The front for players as a module of WebAssembly: what its page calls.

#include "platform/process.h"
#include "play/command_queue.h"
#include "play/front.h"
#include "play/line_reader.h"
#include "play/output.h"

namespace orvelin::play {

namespace {

struct WebEngine {
    CommandQueue queue;
    Output output{standard_output};
    LineReader reader{standard_input, output, queue};
    Front front{queue, output};

    WebEngine() {
        queue.fill_by([this](auto deadline) { reader.look_until(deadline); });
    }
};

}  // namespace

}  // namespace orvelin::play

/// Acts on all lines that wait; the first call makes the engine. 0 when `quit` was among them,
/// after which it is not to be called again.
extern "C" __attribute__((export_name("orvelin_act"))) int orvelin_act() {
    static auto& engine = *new orvelin::play::WebEngine;
    return engine.front.act_on_all() ? 1 : 0;
}

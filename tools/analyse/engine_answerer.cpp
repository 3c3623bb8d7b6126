// An engine that answers.

#include "analyse/answerer.h"
#include "analyse/recorder.h"

namespace orvelin::tools {

namespace {

class EngineAnswerer : public Answerer {
 public:
    analyse::Record answer(Asked const& asked, Request const& request) override {
        return recorder_.record(asked, request);
    }
    void interrupt() override { recorder_.interrupt(); }

 private:
    analyse::Recorder recorder_;
};

}  // namespace

std::unique_ptr<Answerer> make_engine_answerer() {
    return std::make_unique<EngineAnswerer>();
}

}  // namespace orvelin::tools

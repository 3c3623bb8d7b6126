#pragma once

#include <iostream>
#include <sstream>
#include <streambuf>

namespace orvelin::fuzz {

/// Keeps what is written to the standard streams from the terminal for the object's life.
class SwallowedOutput {
 public:
    SwallowedOutput()
        : cout_(std::cout.rdbuf(swallowed_.rdbuf())), cerr_(std::cerr.rdbuf(swallowed_.rdbuf())) {}
    ~SwallowedOutput() {
        std::cout.rdbuf(cout_);
        std::cerr.rdbuf(cerr_);
    }
    SwallowedOutput(SwallowedOutput const&) = delete;
    SwallowedOutput& operator=(SwallowedOutput const&) = delete;

 private:
    std::ostringstream swallowed_;
    std::streambuf* cout_;
    std::streambuf* cerr_;
};

}  // namespace orvelin::fuzz

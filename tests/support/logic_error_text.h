#pragma once

#include <stdexcept>
#include <string>
#include <typeinfo>

namespace orvelin::test {

/// Text of the std::logic_error that `action` throws, "no exception" when it throws none and
/// "derived: " before the text of a derived class.
template <typename Action>
std::string logic_error_text(Action action) {
    try {
        action();
    } catch (std::logic_error const& error) {
        if (typeid(error) != typeid(std::logic_error)) {
            return std::string("derived: ") + error.what();
        }
        return error.what();
    }
    return "no exception";
}

}  // namespace orvelin::test

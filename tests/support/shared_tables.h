#pragma once

#include "generation/tables.h"

namespace orvelin::test {

/// One set of tables for the tests that only read them; building it takes a noticeable time.
inline Tables& shared_tables() {
    static Tables tables;
    return tables;
}

}  // namespace orvelin::test

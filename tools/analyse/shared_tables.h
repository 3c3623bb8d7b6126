#pragma once

#include "generation/tables.h"

namespace orvelin::tools {

/// One for all threads: what is read here never changes.
inline Tables const& shared_tables() {
    static Tables const tables;
    return tables;
}

}  // namespace orvelin::tools

#include "support/data_folder.h"

namespace orvelin::test {

char const* const data_folder = ORVELIN_TEST_DATA;

}  // namespace orvelin::test

#include "HistoryFolder.h"
#include "SodiumSeal.h"

namespace {

const bool isSealing = [] {
    sealingOfTests = {Clipboard::SodiumSeal::make(QByteArray(Clipboard::SodiumSeal::keySize, 'k')), true};
    return sealingOfTests.seal != nullptr;
}();

} // namespace

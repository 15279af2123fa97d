#include "Actions/ContentDetectors.h"
#include "Fuzzer.h"

using namespace ClipboardCore;
using namespace ClipboardCore::ContentDetectors;

void Fuzzer::run(QByteArrayView input)
{
    const Utf8Text content = text(input);
    const auto pretty = prettyJSON(content);
    const auto minified = minifiedJSON(content);
    if (!minified) {
        require(!pretty, "what has no minified form has no pretty one");
        return;
    }
    require(minified->byteCount() <= content.byteCount(), "minified is not longer");
    require(isResult(minifiedJSON(*minified), minified->utf8()), "minified stays as it is");
    if (!pretty)
        return;
    require(isResult(prettyJSON(*minified), pretty->utf8()), "minified says the same as before");
    if (pretty->byteCount() <= sizeLimit)
        require(isResult(minifiedJSON(*pretty), minified->utf8()), "pretty says the same as minified");
}

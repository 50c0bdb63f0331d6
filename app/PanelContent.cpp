#include "PanelContent.h"

#include "status/Symbol.h"

namespace wakeloft {

std::string_view symbolName(PanelNotice::Symbol symbol) {
    switch (symbol) {
    case PanelNotice::Symbol::information:
        break;
    case PanelNotice::Symbol::warning:
    case PanelNotice::Symbol::failure:
        return symbolName(Symbol::exclamationmarkTriangleFill);
    case PanelNotice::Symbol::heat:
        return symbolName(Symbol::thermometerHigh);
    }
    return symbolName(Symbol::infoCircle);
}

} // namespace wakeloft

// The palette entry nearest to a colour: the smallest sum of squared channel
// differences, the lowest entry on a tie. Colours are held with red in the
// low byte. Both the icon editor's reduction and the batch palette tools
// map colours with it, so a picture reduced either way gets the same
// entries.
#pragma once

#include <cstdint>
#include <vector>

namespace korvex::model {

class NearestColour {
public:
    explicit NearestColour(const std::vector<uint32_t>& palette);
    // The index of the nearest entry; 0 for an empty palette.
    int operator()(uint32_t colour) const;

private:
    // Entries in order of red, so that a search walks out from the colour's
    // red and stops on each side once the red difference alone is worse
    // than the best found.
    struct Item {
        int r, g, b, index;
    };
    std::vector<Item> by_red_;
};

}  // namespace korvex::model

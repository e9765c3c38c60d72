// How much red and blue weigh in the luma of the usual colour spaces.
#pragma once

struct LumaWeights {
    double red, blue;
    constexpr double green() const { return 1 - red - blue; }
};

inline constexpr LumaWeights bt601Weights{0.299, 0.114};
inline constexpr LumaWeights bt709Weights{0.2126, 0.0722};
inline constexpr LumaWeights bt2020Weights{0.2627, 0.0593};

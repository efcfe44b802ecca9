#include "Ratios.h"

#include <VarnelShared/JSON.h>

#include <benchmark/benchmark.h>

#include <array>
#include <string_view>

// What parsing costs, destruction included, for texts of 1 to 8 MiB of every unfriendly shape. The budget: twice the
// size, twice the time.

namespace Varnel {
namespace {

constexpr std::array<std::string_view, 7> shapes = {
    R"([1,])", R"([[],])", R"([{},])", R"([{"a":1},])", R"({"#":1,})", R"({"#":{"a":{}},})", R"({"a":1,})",
};

/// The shape's piece between its brackets again and again, "#" counted, up to the size.
QByteArray textOfShape(std::string_view shape, qsizetype size) {
    const QByteArray piece(shape.data() + 1, static_cast<qsizetype>(shape.size()) - 2);
    QByteArray text(1, shape.front());
    for (int i = 0; text.size() < size - piece.size() - 16; ++i) {
        text += QByteArray(piece).replace('#', QByteArray::number(i));
    }
    text.back() = shape.back(); // over the last comma
    return text;
}

void parse(benchmark::State& state) {
    const std::string_view shape = shapes.at(static_cast<std::size_t>(state.range(0)));
    const QByteArray text = textOfShape(shape, state.range(1));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(parseJSON(text).value());
    }
    state.SetLabel(std::string(shape));
    state.SetBytesProcessed(state.iterations() * text.size());
}
constexpr std::int64_t mebibyte = 1 << 20;
BENCHMARK(parse)
    ->ArgsProduct({benchmark::CreateDenseRange(0, shapes.size() - 1, 1),
                   {mebibyte, 2 * mebibyte, 4 * mebibyte, 8 * mebibyte}})
    ->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Varnel

int main(int argc, char** argv) {
    std::vector<Varnel::Bench::Ratio> ratios;
    for (std::size_t shape = 0; shape < Varnel::shapes.size(); ++shape) {
        const std::string name = "parse/" + std::to_string(shape) + '/';
        ratios.emplace_back(name + std::to_string(8 * Varnel::mebibyte), name + std::to_string(Varnel::mebibyte));
    }
    return Varnel::Bench::runAndTellRatios(argc, argv, ratios);
}

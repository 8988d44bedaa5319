// Golden values: the exact bits of every public operation over a fixed grid
// (golden_grid.cpp) and of the elementary functions (golden_math.cpp), kept
// per group as a 64-bit FNV-1a hash and a case count in golden_values.txt.
//
//   mivora_golden check FILE    recompute here and compare with FILE (ctest);
//                               a mismatching group has its values printed
//   mivora_golden write FILE    regenerate FILE (commit it saying why)
//   mivora_golden print [GROUP...]  every case as hex floats, to diff machines
//   mivora_golden path          the processing path this CPU runs
//
// NaNs hash as one value: their sign and payload differ between CPUs (x86
// makes negative NaNs, AArch64 positive ones) and are not part of a result.
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "golden_grid.hpp"
#if MIVORA_GOLDEN_PATH_QUERY
#include "core/kernel_paths.hpp"
#endif

namespace mivora_golden {
namespace {

std::uint64_t bitsOf(double x) {
    if (std::isnan(x)) return 0x7ff8000000000000u;
    std::uint64_t b;
    std::memcpy(&b, &x, sizeof b);
    return b;
}

struct Digest {
    std::uint64_t hash = 14695981039346656037u;
    std::uint64_t count = 0;
    void mix(const Values& v) {
        for (int i = 0; i < v.n; ++i) {
            const std::uint64_t b = bitsOf(v.v[i]);
            for (int byte = 0; byte < 8; ++byte) hash = (hash ^ ((b >> (8 * byte)) & 0xffu)) * 1099511628211u;
        }
    }
    bool operator==(const Digest& o) const { return hash == o.hash && count == o.count; }
};

// Groups in the order the walk first meets them.
class Hasher : public Recorder {
public:
    void add(const std::string& group, const Values& args, const Values& results) override {
        auto it = index_.find(group);
        if (it == index_.end()) {
            it = index_.emplace(group, groups_.size()).first;
            groups_.push_back({group, Digest{}});
        }
        Digest& d = groups_[it->second].second;
        d.mix(args);
        d.mix(results);
        ++d.count;
    }
    const std::vector<std::pair<std::string, Digest>>& groups() const { return groups_; }

private:
    std::map<std::string, std::size_t> index_;
    std::vector<std::pair<std::string, Digest>> groups_;
};

// "group | arguments | results", one case a line, values as hex floats.
class Printer : public Recorder {
public:
    Printer(std::set<std::string> only, std::size_t limit) : only_(std::move(only)), limit_(limit) {}
    void add(const std::string& group, const Values& args, const Values& results) override {
        if (!only_.empty() && only_.count(group) == 0) return;
        if (++printed_[group] > limit_) return;
        std::printf("%s |", group.c_str());
        for (int i = 0; i < args.n; ++i) std::printf(" %a", args.v[i]);
        std::printf(" |");
        for (int i = 0; i < results.n; ++i) std::printf(" %a", std::isnan(results.v[i]) ? NAN : results.v[i]);
        std::printf("\n");
    }

private:
    std::set<std::string> only_;
    std::size_t limit_;
    std::map<std::string, std::size_t> printed_;
};

void walkAll(Recorder& rec) {
    walkFilterGrid(rec);
    walkMathGrid(rec);
}

// File lines: "<hash, 16 hex digits> <count> <group>"; '#' starts a comment.
bool readFile(const char* path, std::vector<std::pair<std::string, Digest>>& out) {
    std::ifstream in(path);
    if (!in) return false;
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream s(line);
        Digest d;
        std::string name;
        s >> std::hex >> d.hash >> std::dec >> d.count;
        std::getline(s >> std::ws, name);
        if (!s && name.empty()) return false;
        out.push_back({name, d});
    }
    return true;
}

int write(const char* path) {
    Hasher h;
    walkAll(h);
    std::FILE* f = std::fopen(path, "w");
    if (!f) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return 2;
    }
    std::fprintf(f,
                 "# Golden values of Mivora: per group, FNV-1a 64 over the bits of every argument and result\n"
                 "# of its cases, and the case count. Written by tests/golden (mivora_golden write); change\n"
                 "# only in a commit that says why.\n");
    for (const auto& [name, d] : h.groups())
        std::fprintf(f, "%016" PRIx64 " %" PRIu64 " %s\n", d.hash, d.count, name.c_str());
    std::fclose(f);
    std::printf("wrote %zu groups to %s\n", h.groups().size(), path);
    return 0;
}

int check(const char* path) {
    std::vector<std::pair<std::string, Digest>> expected;
    if (!readFile(path, expected)) {
        std::fprintf(stderr, "cannot read golden values from %s\n", path);
        return 2;
    }
    Hasher h;
    walkAll(h);
    std::map<std::string, Digest> actual(h.groups().begin(), h.groups().end());
    std::set<std::string> bad;
    for (const auto& [name, want] : expected) {
        const Digest got = actual.count(name) ? actual[name] : Digest{0, 0};  // a missing group has no cases
        actual.erase(name);
        if (got == want) continue;
        std::printf("DIFFERS  %s: expected %016" PRIx64 " over %" PRIu64 " cases, got %016" PRIx64
                    " over %" PRIu64 "\n",
                    name.c_str(), want.hash, want.count, got.hash, got.count);
        bad.insert(name);
    }
    for (const auto& [name, d] : actual) {
        std::printf("NEW      %s (%" PRIu64 " cases, not in the file)\n", name.c_str(), d.count);
        bad.insert(name);
    }
    if (bad.empty()) {
        std::printf("golden values: %zu groups identical\n", expected.size());
        return 0;
    }
    std::printf("\n%zu groups differ. Their first cases here (group | arguments | results);\n"
                "`mivora_golden print GROUP` prints all, to diff with another machine:\n",
                bad.size());
    Printer p(bad, 8);
    walkAll(p);
    return 1;
}

}  // namespace
}  // namespace mivora_golden

int main(int argc, char** argv) {
    using namespace mivora_golden;
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "check" && argc == 3) return check(argv[2]);
    if (mode == "write" && argc == 3) return write(argv[2]);
    if (mode == "print") {
        Printer p(std::set<std::string>(argv + 2, argv + argc), static_cast<std::size_t>(-1));
        walkAll(p);
        return 0;
    }
#if MIVORA_GOLDEN_PATH_QUERY
    if (mode == "path" && argc == 2) {
        const bool fma = Mivora::detail::fastestPath() == Mivora::detail::Path::x86Fma;
        std::printf("%s\n", fma ? "x86Fma" : "portable");
        return 0;
    }
#endif
    std::fprintf(stderr, "usage: mivora_golden check FILE | write FILE | print [GROUP...] | path\n");
    return 2;
}

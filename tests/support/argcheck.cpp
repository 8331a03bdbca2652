#include "argcheck.hpp"

namespace tpxtest {

Fault nullSrc(int plane) {
    return {"null source " + std::to_string(plane), tpxStatusNullPtr,
            [plane](CheckArgs& a) { a.src[size_t(plane)] = nullptr; }};
}
Fault nullSrcArray() { return {"null source array", tpxStatusNullPtr, [](CheckArgs& a) { a.srcArrayNull = true; }}; }
Fault nullDst(int plane) {
    return {"null destination " + std::to_string(plane), tpxStatusNullPtr,
            [plane](CheckArgs& a) { a.dst[size_t(plane)] = nullptr; }};
}
Fault nullDstArray() {
    return {"null destination array", tpxStatusNullPtr, [](CheckArgs& a) { a.dstArrayNull = true; }};
}
Fault badWidth(int value) {
    return {"width " + std::to_string(value), tpxStatusBadSize, [value](CheckArgs& a) { a.roi.width = value; }};
}
Fault badHeight(int value) {
    return {"height " + std::to_string(value), tpxStatusBadSize, [value](CheckArgs& a) { a.roi.height = value; }};
}
Fault custom(std::string name, TpxStatus status, std::function<void(CheckArgs&)> apply) {
    return {std::move(name), status, std::move(apply)};
}

void expectCheckOrder(const std::string& member, const std::function<TpxStatus(CheckArgs&)>& call,
                      const CheckArgs& valid, const std::vector<Fault>& order, const std::vector<Image*>& dsts) {
    for (Image* d : dsts) d->snapshot();
    auto run = [&](const std::vector<size_t>& which, TpxStatus want) {
        CheckArgs a = valid;
        std::string names;
        for (size_t k : which) {
            order[k].apply(a);
            names += (names.empty() ? "" : " + ") + order[k].name;
        }
        EXPECT_EQ(call(a), want) << member << " with " << names;
        for (Image* d : dsts) EXPECT_TRUE(d->untouched()) << member << " with " << names;
    };
    for (size_t i = 0; i < order.size(); ++i) {
        run({i}, order[i].status);
        for (size_t j = i + 1; j < order.size(); ++j) {
            run({i, j}, order[i].status);
            run({j, i}, order[i].status);
        }
    }
}

}  // namespace tpxtest

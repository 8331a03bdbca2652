// Every round trip the families list comes back within its bound.
#include "support/roundtrips.hpp"

#include <gtest/gtest.h>

#include <cstdio>

TEST(RoundTrips, WithinTheirBounds) {
    ASSERT_FALSE(tpxtest::roundTrips().empty());
    for (const tpxtest::RoundTrip& t : tpxtest::roundTrips()) {
        const double err = tpxtest::roundTripError(t, 64, 48);
        EXPECT_GE(err, 0) << t.there << " and " << t.back << " do not fit together";
        EXPECT_LE(err, t.bound) << t.there << " then " << t.back;
        std::printf("%-40s %-40s max error %g\n", t.there, t.back, err);
    }
}

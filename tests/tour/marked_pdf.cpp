#include "tests/support/PdfFixture.h"

#include <cstdlib>
#include <fstream>

/// Usage: marked_pdf FILE MARK PAGES [TITLE]     pages that show MARK1, MARK2 and so on
int main(int argc, char** argv) {
    if (argc < 4) return EXIT_FAILURE;
    quillon::test::PdfFixture fixture(argv[2], std::atoi(argv[3]));
    if (argc > 4) fixture.info("Title", argv[4]);
    std::ofstream file(argv[1], std::ios::binary);
    file << fixture.bytes();
    return file.good() ? EXIT_SUCCESS : EXIT_FAILURE;
}

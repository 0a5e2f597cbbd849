#include "tests/support/PdfFixture.h"

#include <cstdlib>
#include <fstream>

/// Usage: marked_pdf FILE MARK PAGES     pages that show MARK1, MARK2 and so on
int main(int argc, char** argv) {
    if (argc != 4) return EXIT_FAILURE;
    std::ofstream file(argv[1], std::ios::binary);
    file << quillon::test::PdfFixture(argv[2], std::atoi(argv[3])).bytes();
    return file.good() ? EXIT_SUCCESS : EXIT_FAILURE;
}

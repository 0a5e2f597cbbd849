#include "tests/support/RichPdf.h"

namespace quillon::test {

namespace {

const std::string page = "/Parent 2 0 R/MediaBox[0 0 612 792]";

/// The catalog with these entries, and the tree of the two pages.
RawPdf twoPages(const std::string& catalog) {
    RawPdf pdf;
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + catalog + ">>");
    pdf.object(2, "<</Type/Pages/Count 2/Kids[10 0 R 12 0 R]>>");
    return pdf;
}

std::string widget(int number, const std::string& entries) {
    return "<</Type/Annot/Subtype/Widget/Rect[10 10 90 30]/P " + std::to_string(number) + " 0 R" + entries + ">>";
}

}  // namespace

RawPdf beginPdf(const std::string& catalog, const std::vector<std::string>& pages) {
    RawPdf pdf;
    std::string kids;
    for (std::size_t i = 0; i < pages.size(); ++i) kids += std::to_string(10 + 2 * i) + " 0 R ";
    pdf.object(1, "<</Type/Catalog/Pages 2 0 R" + catalog + ">>");
    pdf.object(2, "<</Type/Pages/Count " + std::to_string(pages.size()) + "/Kids[" + kids + "]>>");
    for (std::size_t i = 0; i < pages.size(); ++i) {
        pdf.page(static_cast<int>(10 + 2 * i), std::to_string(i + 1), page + pages[i]);
    }
    return pdf;
}

std::string formPdf(const std::string& mark, const std::string& font) {
    RawPdf pdf = twoPages("/AcroForm 3 0 R");
    pdf.object(3,
               "<</Fields[20 0 R 24 0 R]/CO[24 0 R]/DA(/F 9 Tf 0 g)/DR<</Font<</F 30 0 R>>>>/NeedAppearances true"
               "/XFA(old)>>");
    pdf.page(10, mark + "1", page + "/Annots[21 0 R 23 0 R]").page(12, mark + "2", page + "/Annots[25 0 R 24 0 R]");
    pdf.object(20, "<</T(person)/Kids[21 0 R 22 0 R]>>");
    pdf.object(21, widget(10, "/T(first)/FT/Tx/Parent 20 0 R/V(" + mark + ")"));
    pdf.object(22, "<</T(both)/FT/Tx/V(shared)/Parent 20 0 R/Kids[23 0 R 25 0 R]>>");
    pdf.object(23, widget(10, "/Parent 22 0 R")).object(25, widget(12, "/Parent 22 0 R"));
    pdf.object(24, widget(12, "/T(sum)/FT/Tx/DA(/F 12 Tf 1 g)"));
    pdf.object(30, "<</Type/Font/Subtype/Type1/BaseFont/" + font + ">>");
    return pdf.table().bytes();
}

std::string signedPdf(const std::string& mark, bool above) {
    RawPdf pdf = twoPages("/AcroForm<</Fields[20 0 R]/SigFlags 3>>/Perms<</DocMDP 21 0 R>>/DSS<<>>");
    pdf.page(10, mark + "1", page + "/Annots[" + (above ? "22" : "20") + " 0 R]").page(12, mark + "2");
    const std::string look = "/AP<</N 23 0 R>>";
    if (above) {
        pdf.object(20, "<</T(seal)/FT/Sig/V 21 0 R/Kids[22 0 R]>>");
        pdf.object(22, widget(10, "/Parent 20 0 R" + look));
    } else {
        pdf.object(20, widget(10, "/T(seal)/FT/Sig/V 21 0 R" + look));
    }
    pdf.object(21, "<</Type/Sig/Filter/Adobe.PPKLite/SubFilter/adbe.pkcs7.detached/ByteRange[0 9 9 9]/Contents<00>>>");
    pdf.stream(23, "/Type/XObject/Subtype/Form/BBox[0 0 80 20]", "0 0 80 20 re f");
    return pdf.table().bytes();
}

std::string layeredPdf(const std::string& mark, bool hidesAll) {
    const std::string states = hidesAll ? "/BaseState/OFF/ON[20 0 R]" : "/OFF[21 0 R]";
    RawPdf pdf =
        twoPages("/OCProperties<</OCGs[20 0 R 21 0 R]/D<<" + states + "/Order[20 0 R[21 0 R]]/Locked[21 0 R]>>>>");
    const auto drawing = [&](int number, const std::string& text, const std::string& layer) {
        pdf.object(number, "<</Type/Page/Contents " + std::to_string(number + 1) + " 0 R" + page +
                               "/Resources<</Properties<</L " + layer + " 0 R>>/Font<</F1 30 0 R>>>>>>");
        pdf.stream(
            number + 1, {},
            "BT /F1 24 Tf 20 20 Td (" + text + ") Tj ET /OC/L BDC BT /F1 24 Tf 20 60 Td (layer" + text + ") Tj ET EMC");
    };
    drawing(10, mark + "1", "20");
    drawing(12, mark + "2", "21");
    pdf.object(20, "<</Type/OCG/Name(" + mark + "-shown)>>").object(21, "<</Type/OCG/Name(" + mark + "-hidden)>>");
    pdf.object(30, "<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>");
    return pdf.table().bytes();
}

std::string labelledPdf(const std::string& mark) {
    RawPdf pdf = twoPages("/PageLabels<</Nums[0<</S/r>>1<</S/D/P(A-)/St 5>>]>>");
    return pdf.page(10, mark + "1").page(12, mark + "2").table().bytes();
}

std::string attachedPdf(const std::string& mark) {
    RawPdf pdf = twoPages(
        "/AF[20 0 R]/Names<</EmbeddedFiles<</Names[(note)20 0 R]>>/JavaScript<</Names[(start)<</S/JavaScript/JS(" +
        mark + ")>>]>>>>");
    pdf.page(10, mark + "1").page(12, mark + "2");
    pdf.object(20, "<</Type/Filespec/F(" + mark + ".txt)/AFRelationship/Data/EF<</F 21 0 R>>>>");
    return pdf.stream(21, "/Type/EmbeddedFile", mark).table().bytes();
}

std::string taggedPdf(const std::string& mark, const std::string& role, const std::string& language) {
    const std::string lang = language.empty() ? std::string() : "/Lang(" + language + ")";
    RawPdf pdf = twoPages("/StructTreeRoot 20 0 R/MarkInfo<</Marked true>>" + lang);
    const auto tagged = [&](int number, const std::string& text, const std::string& entries) {
        pdf.object(number, "<</Type/Page/Contents " + std::to_string(number + 1) + " 0 R" + RawPdf::font() + page +
                               entries + ">>");
        pdf.stream(number + 1, {}, "/Text<</MCID 0>>BDC " + RawPdf::content(text) + " EMC");
    };
    tagged(10, mark + "1", "/StructParents 0");
    tagged(12, mark + "2", "/StructParents 1/Annots[30 0 R]");
    pdf.object(20, "<</Type/StructTreeRoot/K 21 0 R/ParentTree 26 0 R/ParentTreeNextKey 3/RoleMap<</Text/" + role +
                       ">>/IDTree<</Names[(id)22 0 R]>>/ClassMap<</Wide<</O/Layout/Width " +
                       std::to_string(role.size()) + ">>>>>>");
    pdf.object(21, "<</S/Document/P 20 0 R/K[22 0 R 23 0 R 24 0 R]>>");
    pdf.object(22, "<</S/Text/P 21 0 R/Pg 10 0 R/K 0/ID(id)/C/Wide/Alt(" + mark + ")>>");
    pdf.object(23, "<</S/Text/P 21 0 R/Pg 12 0 R/K[<</Type/MCR/MCID 0>>]/A<</O/Table/Headers[(id)]>>>>");
    pdf.object(24, "<</S/Link/P 21 0 R/K<</Type/OBJR/Obj 30 0 R/Pg 12 0 R>>>>");
    pdf.object(26, "<</Nums[0[22 0 R]1[23 0 R]2 24 0 R]>>");
    pdf.object(30,
               "<</Type/Annot/Subtype/Link/Rect[0 0 9 9]/StructParent 2/P 12 0 R/A<</S/GoTo/D[10 0 R/Fit]/SD[22 0 "
               "R/Fit]>>>>");
    return pdf.table().bytes();
}

std::string articlePdf(const std::string& mark) {
    RawPdf pdf = twoPages("/Threads[20 0 R]");
    pdf.page(10, mark + "1", page + "/B[21 0 R]").page(12, mark + "2", page + "/B[22 0 R]");
    pdf.object(20, "<</Type/Thread/F 21 0 R/I<</Title(" + mark + ")>>>>");
    pdf.object(21, "<</Type/Bead/T 20 0 R/N 22 0 R/V 22 0 R/P 10 0 R/R[0 0 9 9]>>");
    pdf.object(22, "<</Type/Bead/T 20 0 R/N 21 0 R/V 21 0 R/P 12 0 R/R[0 0 9 9]>>");
    return pdf.table().bytes();
}

std::string presentedPdf(const std::string& mark) {
    RawPdf pdf = twoPages("/Lang(" + mark +
                          ")/OutputIntents[<</Type/OutputIntent/S/GTS_PDFX/OutputConditionIdentifier(" + mark + ")>>]");
    pdf.page(10, mark + "1").page(12, mark + "2", page + "/Dur 3/Trans<</S/Wipe/Di 90>>");
    return pdf.table().bytes();
}

std::string commentedPdf(const std::string& mark) {
    RawPdf pdf = twoPages({});
    pdf.page(10, mark + "1", page + "/Annots[20 0 R 21 0 R 22 0 R]").page(12, mark + "2");
    pdf.object(20, "<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Contents(" + mark + ")/P 10 0 R/Popup 21 0 R>>");
    pdf.object(21, "<</Type/Annot/Subtype/Popup/Rect[9 9 99 99]/P 10 0 R/Parent 20 0 R>>");
    pdf.object(22, "<</Type/Annot/Subtype/Text/Rect[0 0 9 9]/Contents(reply)/P 10 0 R/IRT 20 0 R/RT/R>>");
    return pdf.table().bytes();
}

std::string linkedPdf(const std::string& mark) {
    RawPdf pdf = twoPages("/Names<</Dests<</Names[(goal)[12 0 R/Fit]]>>>>");
    pdf.page(10, mark + "1", page + "/Annots[20 0 R 21 0 R 22 0 R]").page(12, mark + "2", page + "/Annots[23 0 R]");
    const std::string link = "<</Type/Annot/Subtype/Link/Rect[0 0 9 9]";
    pdf.object(20, link + "/Dest[12 0 R/Fit]>>").object(21, link + "/A<</S/GoTo/D(goal)>>>>");
    pdf.object(22, link + "/A<</S/GoTo/D[1/Fit]>>>>").object(23, link + "/Dest[10 0 R/Fit]>>");
    return pdf.table().bytes();
}

}  // namespace quillon::test

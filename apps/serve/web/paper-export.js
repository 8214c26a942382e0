// Paper for the SVG and PDF exports: the screen's size (as drawn) or a page of A4, A3 or A2,
// portrait or landscape. The links keep the viewer's own address; the paper is added when
// one is clicked.
(function () {
  const pdf = document.getElementById("export-pdf");
  if (!pdf) return;
  const row = document.createElement("div");
  row.className = "row";
  row.innerHTML =
    '<label>Paper <select id="export-paper">' +
    '<option value="">as shown</option><option>A4</option><option>A3</option><option>A2</option>' +
    '</select></label> <label><input type="checkbox" id="export-landscape"> landscape</label>';
  pdf.parentElement.after(row);
  const paper = row.querySelector("#export-paper");
  const landscape = row.querySelector("#export-landscape");
  for (const id of ["export-svg", "export-pdf"]) {
    document.getElementById(id).addEventListener("click", (e) => {
      const url = new URL(e.currentTarget.href, location.href);
      url.searchParams.delete("paper");
      url.searchParams.delete("landscape");
      if (paper.value) {
        url.searchParams.set("paper", paper.value);
        if (landscape.checked) url.searchParams.set("landscape", "1");
      }
      e.currentTarget.href = url.pathname + url.search;
    });
  }
})();

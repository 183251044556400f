// The linear combination of columns that comes closest to y, by modified Gram-Schmidt, which keeps the digits that normal
// equations would square away. A column that depends on those before it gets the coefficient 0.

const dot = (a, b) => a.reduce((sum, x, i) => sum + x * b[i], 0);

export const norm = (x) => Math.sqrt(dot(x, x));

/** Takes out of x what points along the unit vector q, and returns how much that was. */
function project_out(q, x) {
  const along = dot(q, x);
  for (let i = 0; i < q.length; ++i) x[i] -= along * q[i];
  return along;
}

export class LeastSquares {
  constructor(columns, y) {
    this.residual = [...y];
    const lengths = columns.map(norm);
    const right = [];
    this.triangle = columns.map((column, i) => {
      const left = norm(column);
      if (!(left > 1e-10 * lengths[i])) return [right.push(0) && 0];
      column.forEach((x, k) => (column[k] = x / left));
      const row = [left, ...columns.slice(i + 1).map((other) => project_out(column, other))];
      right.push(project_out(column, this.residual));
      return row;
    });
    this.solution = new Array(columns.length).fill(0);
    for (let i = columns.length - 1; i >= 0; --i) {
      const [diagonal, ...row] = this.triangle[i];
      if (diagonal !== 0) this.solution[i] = (right[i] - dot(row, this.solution.slice(i + 1))) / diagonal;
    }
  }

  /** The most by which the sum of weights times coefficients changes when y changes by a vector of length 1. */
  sensitivity(weights) {
    const rest = [...weights];
    const along = this.triangle.map(([diagonal, ...row], i) => {
      if (diagonal === 0) return 0;
      const share = rest[i] / diagonal;
      row.forEach((r, k) => (rest[i + 1 + k] -= r * share));
      return share;
    });
    return norm(along);
  }
}

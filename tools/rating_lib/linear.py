"""Systems of linear equations with a symmetric positive matrix."""

import math


def _factor(matrix):
    """The lower triangle whose product with its mirror is the matrix: the method of Cholesky.
    ValueError when there is none."""
    size = len(matrix)
    lower = [[0.0] * size for _ in range(size)]
    for row in range(size):
        for column in range(row + 1):
            rest = matrix[row][column] - sum(
                a * b for a, b in zip(lower[row][:column], lower[column][:column])
            )
            if row != column:
                lower[row][column] = rest / lower[column][column]
            elif rest <= 0:
                raise ValueError("the matrix is not positive")
            else:
                lower[row][row] = math.sqrt(rest)
    return lower


def _solved(lower, right):
    size = len(lower)
    values = list(right)
    for row in range(size):
        values[row] -= sum(lower[row][k] * values[k] for k in range(row))
        values[row] /= lower[row][row]
    for row in reversed(range(size)):
        values[row] -= sum(lower[k][row] * values[k] for k in range(row + 1, size))
        values[row] /= lower[row][row]
    return values


def solved(matrix, right):
    """x of matrix * x = right."""
    return _solved(_factor(matrix), right)


def inverse(matrix):
    """The inverse; it is symmetric too."""
    lower = _factor(matrix)
    size = range(len(matrix))
    return [_solved(lower, [float(row == column) for row in size]) for column in size]
